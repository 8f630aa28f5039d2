#include "simhost/launch/PlayChecks.h"

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/launch/CaseRun.h"
#include "simhost/launch/OutputFile.h"
#include "simhost/launch/OwnFolder.h"
#include "simhost/scenario/PathsOfRun.h"

namespace simhost {

namespace {

struct NamedFile {
    std::string option;
    std::filesystem::path file;  // empty: not named
};

std::string Whole(const std::filesystem::path& file) {
    return Utf8(std::filesystem::absolute(file).lexically_normal().make_preferred().wstring());
}

std::vector<NamedFile> OutputsOf(const PlayOptions& options) {
    return {{"--record", options.record},
            {"--junit", options.junit},
            {"--json-lines", options.jsonLines == L"-" ? std::filesystem::path() : options.jsonLines},
            {"--accept", options.accept}};
}

// Two of them in one file would spoil each other.
void CheckAreDifferent(const std::vector<NamedFile>& files) {
    for (std::size_t i = 0; i < files.size(); ++i) {
        for (std::size_t k = i + 1; k < files.size(); ++k) {
            if (!files[i].file.empty() && !files[k].file.empty() &&
                IsSameInRun(Whole(files[i].file), Whole(files[k].file), "")) {
                throw std::runtime_error(files[i].option + " and " + files[k].option + " name one file, " +
                                         Whole(files[i].file));
            }
        }
    }
}

// The run empties that folder.
void CheckIsElsewhere(const NamedFile& named, const std::filesystem::path& workFolder) {
    if (!workFolder.empty() && !named.file.empty() && IsInFolder(Whole(named.file), Whole(workFolder))) {
        throw std::runtime_error(named.option + ": " + Whole(named.file) +
                                 " lies in the folder that --work-folder names, which a run empties");
    }
}

std::string PlaceOf(const SelectedCase& selected) {
    return Utf8(selected.file->Path().generic_wstring()) + (selected.name.empty() ? "" : "/" + selected.name);
}

// As Windows compares the names of files.
std::wstring InOneCase(std::wstring name) {
    CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
    return name;
}

// Records and folders of several runs are kept by these names.
void CheckNamesDiffer(const std::string& option, const std::vector<SelectedCase>& cases) {
    std::map<std::wstring, const SelectedCase*> known;
    for (const SelectedCase& selected : cases) {
        const auto [other, isNew] = known.emplace(InOneCase(FolderNameOf(*selected.file, selected.name)), &selected);
        if (!isNew) {
            throw std::runtime_error(option + " keeps runs by name, and " + PlaceOf(*other->second) + " and " +
                                     PlaceOf(selected) + " have one name; play them one after the other");
        }
    }
}

void CheckAccept(const PlayOptions& options, const Selection& selection) {
    if (options.accept.empty()) {
        return;
    }
    if (selection.cases.size() + selection.unplayable.size() != 1) {
        throw std::runtime_error("--accept takes one case; name it with --case");
    }
    std::error_code ignored;
    if (std::filesystem::exists(options.accept, ignored) && !options.overwrite) {
        throw std::runtime_error(Utf8(options.accept.generic_wstring()) + " is there already; --force overwrites it");
    }
}

}  // namespace

void CheckFilesOf(const PlayOptions& options) {
    if (!options.plugin.empty()) {
        CheckPluginFile(options.plugin);
    }
    if (!options.workFolder.empty()) {
        CheckIsOwnOrNew(std::filesystem::absolute(options.workFolder));
    }
    std::vector<NamedFile> files = OutputsOf(options);
    CheckAreDifferent(files);
    files.insert(files.end(), {{"--plugin", options.plugin}, {"--plugincore", options.pluginCore}});
    for (const NamedFile& named : files) {
        CheckIsElsewhere(named, options.workFolder);
    }
    CheckOutputFile("--record", options.record, "\"complaints\": [", "result record");
    CheckOutputFile("--junit", options.junit, "<testsuites", "report of JUnit");
    if (options.jsonLines != L"-") {
        CheckOutputFile("--json-lines", options.jsonLines, "{\"event\":", "file of JSON lines");
    }
    CheckCanBeWritten("--accept", options.accept);
}

void CheckSelection(const PlayOptions& options, const Selection& selection) {
    CheckAccept(options, selection);
    if (options.variation.seed && !options.pluginCore.empty()) {
        throw std::runtime_error("--seed makes answers of the double, so --plugincore cannot be named as well");
    }
    if (options.inProcess && selection.cases.size() != 1) {
        throw std::runtime_error("--in-process takes one case; name it with --case");
    }
    if (!options.record.empty()) {
        CheckNamesDiffer("--record", selection.cases);
    }
    if (!options.workFolder.empty()) {
        CheckNamesDiffer("--work-folder", selection.cases);
    }
    for (const SelectedCase& selected : selection.cases) {
        CheckIsElsewhere({"scenario", selected.file->Path()}, options.workFolder);
    }
    for (const Unplayable& unplayable : selection.unplayable) {
        CheckIsElsewhere({"scenario", unplayable.file}, options.workFolder);
    }
    for (const std::filesystem::path& document : options.documents) {
        CheckIsElsewhere({"document", document}, options.workFolder);
    }
}

std::wstring FolderNameOf(const ScenarioFile& file, const std::string& caseName) {
    return file.Path().stem().wstring() + (caseName.empty() ? L"" : L"-" + Wide(caseName));
}

}  // namespace simhost
