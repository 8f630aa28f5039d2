// simhost: a host for the plug-in that runs without the host.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <algorithm>
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/launch/PlayCommand.h"
#include "simhost/ListCommand.h"
#include "simhost/run/PerformCommand.h"

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
    std::string scenario, caseName, plugin, workFolder, record, pluginName;
    std::optional<std::int64_t> timeLimit;
    bool quiet = false;
};

CLI::App* AddPlay(CLI::App& app, TextOptions& options) {
    CLI::App* const play = app.add_subcommand("play", "Play scenarios to the plug-in and print what happens");
    play->add_option("scenario", options.scenario, "A scenario's JSON file, or a folder of them")->required();
    play->add_option("--case", options.caseName, "The one case to play; else all of the file");
    play->add_option("--plugin", options.plugin,
                     "The plug-in's file; else the one that the scenario names, beside this program");
    play->add_option("--work-folder", options.workFolder,
                     "The folder to play in: emptied first, kept afterwards; else one of its own, removed afterwards");
    play->add_option("--record", options.record, "Where to write the result as JSON");
    play->add_option("--time-limit", options.timeLimit, "End each run after so many seconds; else after 60");
    play->add_flag("--quiet", options.quiet, "Print complaints only");
    return play;
}

CLI::App* AddExpand(CLI::App& app, TextOptions& options) {
    CLI::App* const expand =
        app.add_subcommand("expand", "Print a scenario's cases with all values and defaults written out, as JSON");
    expand->add_option("scenario", options.scenario, "The scenario's JSON file")->required();
    return expand;
}

// Started by `play`, in a folder that is laid out already; of no use by hand.
CLI::App* AddPerform(CLI::App& app, TextOptions& options) {
    CLI::App* const perform = app.add_subcommand("perform", "")->group("");
    perform->add_option("scenario", options.scenario)->required();
    perform->add_option("--case", options.caseName);
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
    const CLI::App* const play = AddPlay(app, options);
    const CLI::App* const expand = AddExpand(app, options);
    const CLI::App* const list =
        app.add_subcommand("list", "Print, as JSON, the verbs and keys that scenarios are made of, and the rules");
    AddPerform(app, options);
    try {
        app.parse(ArgumentsBackwards());
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    }
    using simhost::Wide;
    if (play->parsed()) {
        return simhost::Play({Wide(options.scenario), options.caseName, Wide(options.plugin), Wide(options.workFolder),
                              Wide(options.record), options.timeLimit, options.quiet});
    }
    if (list->parsed()) {
        return simhost::List();
    }
    if (expand->parsed()) {
        return simhost::Expand(Wide(options.scenario));
    }
    return simhost::Perform({Wide(options.scenario), options.caseName, Wide(options.workFolder),
                             Wide(options.pluginName), Wide(options.record), options.quiet});
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
