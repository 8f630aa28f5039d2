#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/launch/PlayCommand.h"
#include "simhost/scenario/Ranges.h"

namespace simhost {

namespace {

struct Texts {
    std::vector<std::string> scenarios, cases;
    std::string plugin, pluginCore, workFolder, record, jsonLines, junit, accept, colour = "auto";
    bool quiet = false;
    bool brief = false;
    PlayOptions options;
};

std::vector<std::filesystem::path> Paths(const std::vector<std::string>& texts) {
    std::vector<std::filesystem::path> paths;
    for (const std::string& text : texts) {
        paths.emplace_back(Wide(text));
    }
    return paths;
}

PlayOptions OptionsOf(const Texts& texts) {
    PlayOptions options = texts.options;
    options.scenarios = Paths(texts.scenarios);
    options.cases = texts.cases;
    options.plugin = Wide(texts.plugin);
    options.pluginCore = Wide(texts.pluginCore);
    options.workFolder = Wide(texts.workFolder);
    options.record = Wide(texts.record);
    options.jsonLines = Wide(texts.jsonLines);
    options.junit = Wide(texts.junit);
    options.accept = Wide(texts.accept);
    options.tell.verbosity = texts.quiet ? Verbosity::kQuiet : texts.brief ? Verbosity::kBrief : Verbosity::kFull;
    options.tell.colour = texts.colour == "auto"     ? ColourChoice::kAuto
                          : texts.colour == "always" ? ColourChoice::kAlways
                                                     : ColourChoice::kNever;
    return options;
}

void AddWhatIsPlayed(CLI::App& play, Texts& texts) {
    play.add_option("scenario", texts.scenarios, "Scenarios: files, folders of files, and patterns as in menu-*");
    play.add_option("--case", texts.cases, "The cases to play, by name or pattern; else all")->allow_extra_args(false);
    play.add_flag("--only-failed", texts.options.onlyFailed, "Of those, or of all, what failed the last time");
    play.add_option("--plugin", texts.plugin,
                    "The plug-in's file; else the one that the scenario names, beside this program");
    play.add_option("--plugincore", texts.pluginCore,
                    "The library to play with as PluginCoreX64.dll; else the kit's double");
    play.add_option("--until", texts.options.variation.until,
                    "The last step to play: its number, or what it says. What is left over is not checked then");
    play.add_option("--seed", texts.options.variation.seed,
                    "Let the PluginCore give random answers that it should never give, the same for the same number");
    play.add_flag("--in-process", texts.options.inProcess, "Play one case in this process: for debuggers");
    play.add_option("--work-folder", texts.workFolder,
                    "The folder to play in: new, empty, or made by a run; kept afterwards. Else one that is removed");
    const CLI::Range seconds(ranges::kTimeLimit.least, ranges::kTimeLimit.most);
    play.add_option("--time-limit", texts.options.timeLimitSeconds, "End each run after so many seconds; else after 60")
        ->check(seconds);
    play.add_option("--step-time-limit", texts.options.stepTimeLimitSeconds,
                    "End a run whose step takes so many seconds; else 20")
        ->check(seconds);
    play.add_flag("--no-wait", texts.options.noWait, "Do not wait for another simhost that plays");
}

void AddWhatIsTold(CLI::App& play, Texts& texts) {
    play.add_option("--record", texts.record, "Where to write the result as JSON");
    play.add_option("--json-lines", texts.jsonLines,
                    "Where to append all that happens, one JSON object a line; - for standard output");
    play.add_option("--junit", texts.junit, "Where to write the results as JUnit XML");
    CLI::Option* const accept =
        play.add_option("--accept", texts.accept, "Write a new scenario, which expects what was observed");
    play.add_flag("--force", texts.options.overwrite, "Overwrite the scenario that is there already")->needs(accept);
    CLI::Option* const brief = play.add_flag("--brief", texts.brief, "Print a line for each step, all of failed ones");
    play.add_flag("--quiet", texts.quiet, "Print complaints only")->excludes(brief);
    play.add_option("--color", texts.colour, "Colour: auto (on a terminal), always or never")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

}  // namespace

void AddPlay(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    CLI::App* const play = app.add_subcommand("play", "Play scenarios to the plug-in and print what happens");
    AddWhatIsPlayed(*play, *texts);
    AddWhatIsTold(*play, *texts);
    play->callback([texts, &chosen] {
        if (texts->scenarios.empty() && !texts->options.onlyFailed) {
            throw CLI::RequiredError("scenario");
        }
        chosen = [texts] { return Play(OptionsOf(*texts)); };
    });
}

}  // namespace simhost
