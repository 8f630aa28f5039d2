// The launch-info files in the real application-data folders, for the time of a run. What lay there before is put back:
// at the end, or by the next run when this one's process is killed. Until then it lies in a journal.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "simhost/scenario/Scenario.h"

namespace simhost {

class LaunchInfoFiles {
  public:
    // Writes the files that the scenario describes and removes the others. Throws std::runtime_error.
    explicit LaunchInfoFiles(const LaunchInfo& info);
    ~LaunchInfoFiles();
    // What a run whose process was killed has left. Throws std::runtime_error.
    static void PutBackLeftovers();
    LaunchInfoFiles(const LaunchInfoFiles&) = delete;
    LaunchInfoFiles& operator=(const LaunchInfoFiles&) = delete;

  private:
    struct Place {
        std::filesystem::path file;
        std::optional<std::string> before;
    };

    void Keep(int folder);
    void PutBack() const;
    void WriteJournal() const;

    std::vector<Place> mPlaces;
};

}  // namespace simhost
