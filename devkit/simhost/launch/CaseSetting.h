// What one case is played in: its folder laid out, the launch-info files and the processes that it describes, the
// variables that the doubles and the host read. Put back and removed with the object.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "simhost/launch/CaseRun.h"
#include "simhost/launch/ChildProcess.h"
#include "simhost/launch/Job.h"
#include "simhost/launch/LaunchInfoFiles.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/scenario/Scenario.h"
#include "simhost/scenario/ScenarioFile.h"

namespace simhost {

// Removes the run's folder at its end when it was made for this run alone.
class FolderForOneRun {
  public:
    FolderForOneRun(std::filesystem::path folder, bool keep) : mFolder(std::move(folder)), mKeep(keep) {}
    ~FolderForOneRun();
    FolderForOneRun(const FolderForOneRun&) = delete;
    FolderForOneRun& operator=(const FolderForOneRun&) = delete;

  private:
    std::filesystem::path mFolder;
    bool mKeep;
};

class CaseSetting {
  public:
    // Waits for its turn: see BeginRuns. Throws std::exception when the case cannot be played.
    CaseSetting(const ScenarioFile& file, const std::string& caseName, const RunOptions& options);

    // Makes the folder anew, as it was at first. Nothing may run in it.
    void LayOutAgain() const { const LaidOut again(mFolder, mScenario, mPlugin, mOptions); }

    const RunFolder& Folder() const { return mFolder; }
    const Scenario& Story() const { return mScenario; }

  private:
    struct LaidOut {
        LaidOut(const RunFolder& folder, const Scenario& scenario, const std::filesystem::path& plugin,
                const RunOptions& options);
    };

    RunOptions mOptions;
    std::filesystem::path mPlugin;
    RunFolder mFolder;
    Scenario mScenario;
    FolderForOneRun mForOneRun;
    LaidOut mLaidOut;
    LaunchInfoFiles mLaunchInfo;
    Job mJob;
    std::vector<ChildProcess> mProcesses;
};

}  // namespace simhost
