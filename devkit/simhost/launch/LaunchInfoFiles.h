// The launch-info files in the real application-data folders, for the time of a run. What lay there before is put back.
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
    LaunchInfoFiles(const LaunchInfoFiles&) = delete;
    LaunchInfoFiles& operator=(const LaunchInfoFiles&) = delete;

  private:
    struct Place {
        std::filesystem::path file;
        std::optional<std::string> before;
    };

    void Put(int folder, const std::optional<std::string>& contents);

    std::vector<Place> mPlaces;
};

}  // namespace simhost
