// One run of one case, in a process and a folder of its own. Lays out what it needs and puts everything back.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "simhost/report/ResultRecord.h"
#include "simhost/report/TellOptions.h"
#include "simhost/scenario/ScenarioFile.h"
#include "simhost/scenario/Variation.h"
#include "simhost/watch/HostWatch.h"

namespace simhost {

struct RunOptions {
    std::filesystem::path plugin;      // empty: the scenario's, beside this program
    std::filesystem::path pluginCore;  // empty: the double of the kit
    std::filesystem::path workFolder;  // see OwnFolder.h; never empty
    bool keepFolder = false;
    std::filesystem::path record;                        // empty: none is kept
    std::optional<std::int64_t> timeLimitSeconds{};      // nothing: the scenario's, else 60
    std::optional<std::int64_t> stepTimeLimitSeconds{};  // nothing: the scenario's, else 20
    bool noWait = false;                                 // for another run: it is an error then
    TellOptions tell{};
    Variation variation{};
    bool inProcess = false;  // no process of its own: for debuggers
};

// Returns when the host's process has ended or was ended. Throws std::exception when the case cannot be played.
Verdict RunCase(const ScenarioFile& file, const std::string& caseName, const RunOptions& options);

// What the options say, else the scenario, else what is usual.
WatchLimits LimitsOf(const Scenario& scenario, const RunOptions& options);

// Throws std::runtime_error, in words, for a file that is no library.
void CheckPluginFile(const std::filesystem::path& file);
// The plug-in's file that the case is played to. Throws std::runtime_error when there is none.
std::filesystem::path PluginFileOf(const ScenarioFile& file, const std::string& caseName, const RunOptions& options);

// The folder of this program, with the libraries and plug-ins that scenarios name.
std::filesystem::path KitFolder();

}  // namespace simhost
