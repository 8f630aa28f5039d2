// The commands of the program: what each takes on the command line, and what carries it out.
//
// To add a command, write a function of this kind in a file of its own, declare it here, and call it in Main.cpp.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace simhost {

// What the command line asks for; answers the program's exit code. Set while the command line is parsed.
using ChosenCommand = std::function<int()>;

void AddPlay(CLI::App& app, ChosenCommand& chosen);
void AddOpen(CLI::App& app, ChosenCommand& chosen);
void AddWindow(CLI::App& app, ChosenCommand& chosen);
void AddExpand(CLI::App& app, ChosenCommand& chosen);
void AddList(CLI::App& app, ChosenCommand& chosen);
void AddContract(CLI::App& app, ChosenCommand& chosen);
void AddExplain(CLI::App& app, ChosenCommand& chosen);
void AddSweep(CLI::App& app, ChosenCommand& chosen);
// Started by "contract".
void AddProbe(CLI::App& app, ChosenCommand& chosen);
// Started by the other commands, and of no use by hand. AddPerform: the host, in a folder that is laid out already.
void AddPerform(CLI::App& app, ChosenCommand& chosen);
// Started by "sweep".
void AddSweepWorker(CLI::App& app, ChosenCommand& chosen);
void AddSymbols(CLI::App& app, ChosenCommand& chosen);

}  // namespace simhost
