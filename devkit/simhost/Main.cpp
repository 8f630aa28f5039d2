// simhost: a host for the plug-in that runs without the host.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"

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

int Run() {
    // The transcript is UTF-8, with line feeds alone.
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);

    CLI::App app("A host for the plug-in that runs without the host", "simhost");
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
    simhost::AddProbe(app, chosen);
    simhost::AddPerform(app, chosen);
    try {
        app.parse(ArgumentsBackwards());
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    }
    return chosen();
}

}  // namespace

int main() {
    try {
        return Run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simhost: %s\n", error.what());
        return 2;
    }
}
