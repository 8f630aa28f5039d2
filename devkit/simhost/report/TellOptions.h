// What the host's process is asked to tell, and how: chosen on the command line, and passed on to that process.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/report/Colour.h"
#include "simhost/report/Transcript.h"

namespace simhost {

struct TellOptions {
    Verbosity verbosity = Verbosity::kFull;
    ColourChoice colour = ColourChoice::kAuto;
    std::filesystem::path events;  // what happens, for machines: see EventLog; empty: nobody wants them
};

// As the program takes them on its command line.
inline std::vector<std::string> AsArguments(const TellOptions& options) {
    std::vector<std::string> arguments = {"--verbosity", std::to_string(static_cast<int>(options.verbosity)),
                                          "--colour", std::to_string(static_cast<int>(options.colour))};
    if (!options.events.empty()) {
        arguments.insert(arguments.end(), {"--events", Utf8(options.events.wstring())});
    }
    return arguments;
}

}  // namespace simhost
