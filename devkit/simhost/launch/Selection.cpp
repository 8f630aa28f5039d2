#include "simhost/launch/Selection.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/launch/CaseRun.h"
#include "simhost/launch/Patterns.h"
#include "simhost/scenario/NearestWord.h"

namespace simhost {

namespace {

bool IsScenario(const std::filesystem::path& file) {
    const std::wstring name = file.filename().wstring();
    return name.ends_with(L".json") && !name.ends_with(L".schema.json");
}

// By name, so that every run plays in the same order.
std::vector<std::filesystem::path> ScenariosIn(const std::filesystem::path& folder, const std::string& pattern) {
    std::vector<std::filesystem::path> files;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder.empty() ? "." : folder, ignored)) {
        const std::filesystem::path& file = entry.path();
        if (IsScenario(file) && (MatchesPattern(Utf8(file.filename().wstring()), pattern) ||
                                 MatchesPattern(Utf8(file.stem().wstring()), pattern))) {
            files.push_back(folder / file.filename());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::filesystem::path> ScenariosNamed(const std::filesystem::path& name) {
    const std::string pattern = Utf8(name.filename().wstring());
    std::error_code ignored;
    const bool folder = std::filesystem::is_directory(name, ignored);
    if (!folder && !HasWildcards(pattern)) {
        return {name};
    }
    std::vector<std::filesystem::path> files =
        folder ? ScenariosIn(name, "*") : ScenariosIn(name.parent_path(), pattern);
    if (files.empty()) {
        const std::string shown = Utf8(name.generic_wstring());
        throw std::runtime_error(folder ? "there is no scenario in " + shown : "no scenario matches " + shown);
    }
    return files;
}

bool MatchesAny(const std::string& name, const std::vector<std::string>& patterns) {
    return patterns.empty() || std::any_of(patterns.begin(), patterns.end(),
                                           [&](const std::string& pattern) { return MatchesPattern(name, pattern); });
}

void CheckPatterns(const std::vector<std::string>& patterns, const std::vector<std::string>& names) {
    for (const std::string& pattern : patterns) {
        if (std::none_of(names.begin(), names.end(),
                         [&](const std::string& name) { return MatchesPattern(name, pattern); })) {
            throw std::runtime_error("there is no case \"" + pattern + "\"" + DidYouMean(pattern, names));
        }
    }
}

}  // namespace

std::string Unplayable::Place() const {
    return Utf8(file.filename().wstring()) + (caseName.empty() ? "" : "/" + caseName);
}

std::vector<std::filesystem::path> ScenariosNamed(const std::vector<std::filesystem::path>& names) {
    std::vector<std::filesystem::path> files;
    std::set<std::filesystem::path> known;
    for (const std::filesystem::path& name : names) {
        for (const std::filesystem::path& file : ScenariosNamed(name)) {
            if (known.insert(std::filesystem::absolute(file).lexically_normal()).second) {
                files.push_back(file);
            }
        }
    }
    return files;
}

Selection SelectCases(const std::vector<std::filesystem::path>& files, const std::vector<std::string>& casePatterns) {
    Selection selection;
    std::vector<std::string> names;
    for (const std::filesystem::path& path : files) {
        try {
            const auto file = std::make_shared<const ScenarioFile>(path);
            names.insert(names.end(), file->Cases().begin(), file->Cases().end());
            file->Check(KitFolder());
            for (const std::string& name : file->Cases()) {
                if (MatchesAny(name, casePatterns)) {
                    selection.cases.push_back({file, name});
                }
            }
        } catch (const ScenarioError& error) {
            selection.unplayable.push_back({path, "", error.Lines()});
        }
    }
    if (selection.unplayable.empty()) {
        CheckPatterns(casePatterns, names);
    }
    return selection;
}

}  // namespace simhost
