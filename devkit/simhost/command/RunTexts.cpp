#include "simhost/command/RunTexts.h"

#include "doubles/common/Text.h"
#include "simhost/scenario/Ranges.h"

namespace simhost {

namespace {

void AddWhatItIsPlayedWith(CLI::App& command, RunTexts& texts) {
    command.add_option("--plugin", texts.plugin,
                       "The plug-in's file; else the one that the scenario names, beside this program");
    command.add_option("--plugincore", texts.pluginCore,
                       "The library to play with as PluginCoreX64.dll; else the kit's double");
    command.add_flag("--in-process", texts.options.inProcess, "Play one case in this process: for debuggers");
    command.add_option(
        "--work-folder", texts.workFolder,
        "The folder to play in: new, empty, or made by a run; kept afterwards. Else one that is removed");
    const CLI::Range seconds(ranges::kTimeLimit.least, ranges::kTimeLimit.most);
    command
        .add_option("--time-limit", texts.options.timeLimitSeconds,
                    "End each run after so many seconds; else after 60, or what the scenario says")
        ->check(seconds);
    command
        .add_option("--step-time-limit", texts.options.stepTimeLimitSeconds,
                    "End a run whose step takes so many seconds; else 20")
        ->check(seconds);
    command.add_flag("--no-wait", texts.options.noWait, "Do not wait for another simhost that plays");
}

void AddWhatIsTold(CLI::App& command, RunTexts& texts) {
    command.add_option("--record", texts.record, "Where to write the result as JSON");
    command.add_option("--json-lines", texts.jsonLines,
                       "Where to append all that happens, one JSON object a line; - for standard output");
    command.add_option("--junit", texts.junit, "Where to write the results as JUnit XML");
    CLI::Option* const brief =
        command.add_flag("--brief", texts.brief, "Print a line for each step, all of failed ones");
    command.add_flag("--quiet", texts.quiet, "Print complaints only")->excludes(brief);
    command.add_option("--color", texts.colour, "Colour: auto (on a terminal), always or never")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

}  // namespace

void AddRunOptions(CLI::App& command, RunTexts& texts) {
    AddWhatItIsPlayedWith(command, texts);
    AddWhatIsTold(command, texts);
}

PlayOptions OptionsOf(const RunTexts& texts) {
    PlayOptions options = texts.options;
    options.plugin = Wide(texts.plugin);
    options.pluginCore = Wide(texts.pluginCore);
    options.workFolder = Wide(texts.workFolder);
    options.record = Wide(texts.record);
    options.jsonLines = Wide(texts.jsonLines);
    options.junit = Wide(texts.junit);
    options.tell.verbosity = texts.quiet ? Verbosity::kQuiet : texts.brief ? Verbosity::kBrief : Verbosity::kFull;
    options.tell.colour = texts.colour == "auto"     ? ColourChoice::kAuto
                          : texts.colour == "always" ? ColourChoice::kAlways
                                                     : ColourChoice::kNever;
    return options;
}

}  // namespace simhost
