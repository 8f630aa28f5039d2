#pragma once

#include <filesystem>
#include <string>

#include "simhost/report/TellOptions.h"
#include "simhost/scenario/Variation.h"

namespace simhost {

struct PerformOptions {
    std::filesystem::path scenario;
    std::string caseName;              // empty: the file has no cases
    std::filesystem::path workFolder;  // laid out already
    std::filesystem::path pluginName;
    std::filesystem::path record;
    TellOptions tell{};
    Variation variation{};
};

// Plays one case of a scenario in this process and writes the result record. The process is the host: it may be lost to
// a crash, and what was loaded into it stays there. Exit code 0 when the run passed.
int Perform(const PerformOptions& options);

}  // namespace simhost
