// simhost: a host for the plug-in that runs without the host.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/launch/InProcessRun.h"
#include "simhost/scenario/NearestWord.h"

#ifndef QUORVEL_VERSION
#error "the version number comes from the build"
#endif

namespace {

// In UTF-8, and in the order in which CLI11 takes them: the last one first, the program's name left out.
std::vector<std::string> ArgumentsBackwards() {
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> backwards;
    for (int i = count - 1; i > 0; --i) {
        backwards.push_back(simhost::Utf8(std::wstring_view(arguments[i])));
    }
    LocalFree(arguments);
    return backwards;
}

// In words of ours: of a word that is no command the library says no more than that one is missing.
void CheckCommand(const CLI::App& app, const std::vector<std::string>& backwards) {
    if (backwards.empty()) {
        throw std::runtime_error("a command is missing; --help names them");
    }
    if (backwards.back().starts_with("-")) {
        return;
    }
    const std::string& word = backwards.back();
    std::vector<std::string> commands;
    for (const CLI::App* const command : app.get_subcommands(nullptr)) {
        if (command->get_name() == word) {
            return;
        }
        // Commands without a group are for the program itself.
        if (!command->get_group().empty()) {
            commands.push_back(command->get_name());
        }
    }
    throw std::runtime_error("there is no command \"" + word + "\"" + simhost::DidYouMean(word, commands));
}

int Run() {
    // For the host's process as well: no window of Windows' own waits for somebody.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    // The transcript is UTF-8, with line feeds alone.
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);

    CLI::App app("A host for the plug-in that runs without the host", "simhost");
    app.set_version_flag("--version", "simhost " QUORVEL_VERSION);
    app.require_subcommand(1);
    // A path may begin with a slash.
    app.allow_windows_style_options(false);
    simhost::ChosenCommand chosen;
    simhost::AddPlay(app, chosen);
    simhost::AddOpen(app, chosen);
    simhost::AddWindow(app, chosen);
    simhost::AddExpand(app, chosen);
    simhost::AddList(app, chosen);
    simhost::AddContract(app, chosen);
    simhost::AddExplain(app, chosen);
    simhost::AddSweep(app, chosen);
    simhost::AddProbe(app, chosen);
    simhost::AddPerform(app, chosen);
    simhost::AddSweepWorker(app, chosen);
    simhost::AddSymbols(app, chosen);
    const std::vector<std::string> arguments = ArgumentsBackwards();
    CheckCommand(app, arguments);
    try {
        app.parse(std::vector(arguments));
    } catch (const CLI::ParseError& error) {
        // Its own codes tell one mistake from the other, which nobody needs.
        return app.exit(error) == 0 ? 0 : 2;
    }
    return chosen();
}

// Exit codes are 0, 1 and 2, whatever happens.
LONG WINAPI OnCrash(EXCEPTION_POINTERS* exception) {
    const bool isPlaying = simhost::InProcessRun::IsUnderWay();
    std::fflush(stdout);
    std::fprintf(stderr, "%s exception 0x%08lX at %p\n",
                 isPlaying ? "FAILED crash: the plug-in plays in this process, and there was the"
                           : "simhost: crashed itself, by the",
                 exception->ExceptionRecord->ExceptionCode, exception->ExceptionRecord->ExceptionAddress);
    TerminateProcess(GetCurrentProcess(), isPlaying ? 1 : 2);
    return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

int main() {
    SetUnhandledExceptionFilter(&OnCrash);
    try {
        return Run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simhost: %s\n", error.what());
        return 2;
    } catch (...) {
        std::fprintf(stderr, "simhost: an unknown exception\n");
        return 2;
    }
}
