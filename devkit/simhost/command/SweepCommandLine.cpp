#include <memory>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/scenario/Ranges.h"
#include "simhost/sweep/SweepCommand.h"

namespace simhost {

namespace {

struct Texts {
    std::vector<std::string> scenarios, cases;
    std::vector<std::string> kinds = {"host", "import", "allocation"};
    std::vector<std::string> modes = {"once", "from-here", "filled"};
    std::string plugin, json;
    sweep::SweepOptions options;
};

sweep::SweepOptions OptionsOf(const Texts& texts) {
    sweep::SweepOptions options = texts.options;
    for (const std::string& scenario : texts.scenarios) {
        options.scenarios.emplace_back(Wide(scenario));
    }
    options.cases = texts.cases;
    options.plugin = Wide(texts.plugin);
    options.json = Wide(texts.json);
    for (const std::string& kind : texts.kinds) {
        options.kinds.push_back(sweep::KindNamed(kind).value());
    }
    for (const std::string& mode : texts.modes) {
        options.modes.push_back(sweep::ModeNamed(mode).value());
    }
    return options;
}

void AddWhatFails(CLI::App& command, Texts& texts) {
    command.add_option("--kind", texts.kinds, "What fails: host, import, allocation; else each")
        ->allow_extra_args(false)
        ->check(CLI::IsMember({"host", "import", "allocation"}));
    command
        .add_option("--mode", texts.modes,
                    "How: once, from-here (that call and all later ones), filled (an operation of the host that fills "
                    "its outputs although it fails); else each")
        ->allow_extra_args(false)
        ->check(CLI::IsMember({"once", "from-here", "filled"}));
    command.add_option("--number", texts.options.number, "The one call that fails, from 1; else each in turn")
        ->check(CLI::PositiveNumber);
    command.add_flag("--distinct", texts.options.distinct,
                     "Of calls of one operation on one way through the plug-in, fail the first one alone");
    command.add_option("--every", texts.options.every, "Of each kind and mode, play each so many-th fault alone")
        ->check(CLI::PositiveNumber);
    command
        .add_option("--replay-every", texts.options.replayEvery,
                    "Play the scenario without a fault after so many faults; else after each")
        ->check(CLI::PositiveNumber);
}

}  // namespace

void AddSweep(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    CLI::App* const sweep = app.add_subcommand("sweep", "Let one call after the other fail while a scenario is played");
    sweep->add_option("scenario", texts->scenarios, "Scenarios: files, folders of files, and patterns as in menu-*")
        ->required();
    sweep->add_option("--case", texts->cases, "The cases to play, by name or pattern; else all")
        ->allow_extra_args(false);
    AddWhatFails(*sweep, *texts);
    sweep->add_option("--plugin", texts->plugin,
                      "The plug-in's file; else the one that the scenario names, beside this program");
    sweep
        ->add_option("--step-time-limit", texts->options.stepTimeLimitSeconds,
                     "A step that takes so many seconds hangs; else 20, or what the scenario says")
        ->check(CLI::Range(ranges::kTimeLimit.least, ranges::kTimeLimit.most));
    sweep->add_option("--json", texts->json, "Where to write what came of it, in numbers");
    sweep->add_flag("--no-wait", texts->options.noWait, "Do not wait for another simhost that plays");
    sweep->callback([texts, &chosen] { chosen = [texts] { return sweep::Sweep(OptionsOf(*texts)); }; });
}

}  // namespace simhost
