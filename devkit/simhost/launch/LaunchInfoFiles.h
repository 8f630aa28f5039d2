// The launch-info files in the real application-data folders, for the time of a run: see ReplacedFiles.
#pragma once

#include "simhost/launch/ReplacedFiles.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

class LaunchInfoFiles {
  public:
    // Writes the files that the scenario describes and removes the others. Throws std::runtime_error.
    explicit LaunchInfoFiles(const LaunchInfo& info);
    // What a run whose process was killed has left. Throws std::runtime_error.
    static void PutBackLeftovers();

  private:
    ReplacedFiles mFiles;
};

}  // namespace simhost
