// simhost: a host for the plug-in that runs without the host.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <algorithm>
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/PerformCommand.h"
#include "simhost/PlayCommand.h"

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

struct TextOptions {
    std::string scenario, plugin, workFolder, record, pluginName;
    std::int64_t timeLimit = 60;
    bool quiet = false;
};

CLI::App* AddPlay(CLI::App& app, TextOptions& options) {
    CLI::App* const play = app.add_subcommand("play", "Play a scenario to the plug-in and print what happens");
    play->add_option("scenario", options.scenario, "The scenario's JSON file")->required();
    play->add_option("--plugin", options.plugin, "The plug-in's file; else the one beside this program");
    play->add_option("--work-folder", options.workFolder,
                     "The folder to play in: emptied first, kept afterwards; else one of its own, removed afterwards");
    play->add_option("--record", options.record, "Where to write the result as JSON");
    play->add_option("--time-limit", options.timeLimit, "End the run after so many seconds")->capture_default_str();
    play->add_flag("--quiet", options.quiet, "Print complaints only");
    return play;
}

// Started by `play`, in a folder that is laid out already; of no use by hand.
CLI::App* AddPerform(CLI::App& app, TextOptions& options) {
    CLI::App* const perform = app.add_subcommand("perform", "")->group("");
    perform->add_option("scenario", options.scenario)->required();
    perform->add_option("--work-folder", options.workFolder)->required();
    perform->add_option("--plugin-name", options.pluginName)->required();
    perform->add_option("--record", options.record)->required();
    perform->add_flag("--quiet", options.quiet);
    return perform;
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
    TextOptions options;
    CLI::App* const play = AddPlay(app, options);
    AddPerform(app, options);
    try {
        app.parse(ArgumentsBackwards());
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    }
    using simhost::Wide;
    if (play->parsed()) {
        return simhost::Play({Wide(options.scenario), Wide(options.plugin), Wide(options.workFolder),
                              Wide(options.record), options.timeLimit, options.quiet});
    }
    return simhost::Perform({Wide(options.scenario), Wide(options.workFolder), Wide(options.pluginName),
                             Wide(options.record), options.quiet});
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
