// The options that every command has which plays something: what it is played with, and what is told of it.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "simhost/launch/PlayCommand.h"

namespace simhost {

// As they stand on the command line. Outlives the parsing.
struct RunTexts {
    std::string plugin, pluginCore, workFolder, record, jsonLines, junit, colour = "auto";
    bool quiet = false;
    bool brief = false;
    PlayOptions options;  // those that need no reading
};

void AddRunOptions(CLI::App& command, RunTexts& texts);
PlayOptions OptionsOf(const RunTexts& texts);

}  // namespace simhost
