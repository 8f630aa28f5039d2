#include <memory>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/command/RunTexts.h"
#include "simhost/launch/PlayCommand.h"

namespace simhost {

namespace {

struct Texts {
    std::vector<std::string> scenarios, cases;
    std::string accept;
    RunTexts run;
};

PlayOptions OptionsOf(const Texts& texts) {
    PlayOptions options = OptionsOf(texts.run);
    for (const std::string& scenario : texts.scenarios) {
        options.scenarios.emplace_back(Wide(scenario));
    }
    options.cases = texts.cases;
    options.accept = Wide(texts.accept);
    return options;
}

void AddWhatIsPlayed(CLI::App& play, Texts& texts) {
    PlayOptions& options = texts.run.options;
    play.add_option("scenario", texts.scenarios, "Scenarios: files, folders of files, and patterns as in menu-*");
    play.add_option("--case", texts.cases, "The cases to play, by name or pattern; else all")->allow_extra_args(false);
    play.add_flag("--only-failed", options.onlyFailed, "Of those, or of all, what failed the last time");
    play.add_option("--until", options.variation.until,
                    "The last step to play: its number, or what it says. What is left over is not checked then");
    play.add_option("--seed", options.variation.seed,
                    "Let the PluginCore give random answers that it should never give, the same for the same number");
    CLI::Option* const accept =
        play.add_option("--accept", texts.accept, "Write a new scenario, which expects what was observed");
    play.add_flag("--force", options.overwrite, "Overwrite the scenario that is there already")->needs(accept);
}

}  // namespace

void AddPlay(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    CLI::App* const play = app.add_subcommand("play", "Play scenarios to the plug-in and print what happens");
    AddWhatIsPlayed(*play, *texts);
    AddRunOptions(*play, texts->run);
    play->callback([texts, &chosen] {
        if (texts->scenarios.empty() && !texts->run.options.onlyFailed) {
            throw CLI::RequiredError("scenario");
        }
        chosen = [texts] { return Play(OptionsOf(*texts)); };
    });
}

}  // namespace simhost
