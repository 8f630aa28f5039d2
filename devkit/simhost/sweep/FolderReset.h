// The folder of a run as it was before the first step, for the next run in the same process.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "simhost/launch/RunFolder.h"
#include "simhost/scenario/Scenario.h"

namespace simhost::sweep {

class FolderReset {
  public:
    // Of a folder that is laid out, before anything was played in it. `kit`: the folder of the libraries that are
    // copied.
    FolderReset(const Scenario& scenario, const RunFolder& folder, std::filesystem::path kit);

    // No library may be loaded that a step of the scenario replaces or moves. Throws std::runtime_error.
    void Reset();

  private:
    void RemoveNewFiles() const;
    void WriteScripts();

    const Scenario& mScenario;
    const RunFolder& mFolder;
    std::filesystem::path mKit;
    std::vector<std::string> mChanged;  // files that steps replace or move
    std::set<std::filesystem::path> mFiles;
    std::size_t mResets = 0;
};

}  // namespace simhost::sweep
