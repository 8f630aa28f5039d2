#include "simhost/sweep/FolderReset.h"

#include <utility>
#include <variant>

#include "simhost/launch/FileChanges.h"
#include "simhost/report/WholeFile.h"

namespace simhost::sweep {

namespace {

// Paths of the scenario whose files come and go in its steps.
std::vector<std::string> ChangedBy(const Step& step) {
    std::vector<std::string> paths;
    if (const auto* const write = std::get_if<WriteFiles>(&step.action)) {
        for (const FileToMake& file : write->files) {
            paths.push_back(file.path);
        }
    } else if (const auto* const move = std::get_if<MoveWithin>(&step.action)) {
        paths = {move->move.from, move->move.to};
    }
    return paths;
}

std::vector<std::string> ChangedBy(const Scenario& scenario) {
    std::vector<std::string> paths;
    const auto add = [&](const Step& step) {
        const std::vector<std::string> more = ChangedBy(step);
        paths.insert(paths.end(), more.begin(), more.end());
    };
    for (const Step& step : scenario.steps) {
        add(step);
        for (const NestedStep& nested : step.nested) {
            add(nested.step.front());
        }
    }
    return paths;
}

std::set<std::filesystem::path> FilesIn(const std::filesystem::path& folder) {
    std::set<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.insert(entry.path());
        }
    }
    return files;
}

}  // namespace

FolderReset::FolderReset(const Scenario& scenario, const RunFolder& folder, std::filesystem::path kit)
    : mScenario(scenario),
      mFolder(folder),
      mKit(std::move(kit)),
      mChanged(ChangedBy(scenario)),
      mFiles(FilesIn(folder.Root())) {}

void FolderReset::Reset() {
    RemoveNewFiles();
    for (const std::string& path : mChanged) {
        RemoveFile(mFolder.At(path));
    }
    if (!mChanged.empty()) {
        mFolder.LayOutFiles(mScenario, mKit, {});
    }
    // Documents that are saved have another time and may have other contents.
    for (const FileToMake& file : mScenario.files) {
        mFolder.WriteFile(file);
    }
    WriteScripts();
    // The double of the messaging library goes on at its end.
    RemoveFile(mFolder.BusCalls());
}

// A double that stays loaded begins a script anew when its text is another one: each second time a blank follows.
void FolderReset::WriteScripts() {
    const std::string end(++mResets % 2, ' ');
    WriteWholeFile(mFolder.Answers(), mScenario.answers.dump() + end);
    WriteWholeFile(mFolder.BusAnswers(), mScenario.busAnswers.dump() + end);
}

void FolderReset::RemoveNewFiles() const {
    for (const std::filesystem::path& file : FilesIn(mFolder.Root())) {
        if (!mFiles.contains(file)) {
            RemoveFile(file);
        }
    }
}

}  // namespace simhost::sweep
