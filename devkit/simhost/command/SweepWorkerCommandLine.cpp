#include <memory>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/sweep/Worker.h"

namespace simhost {

namespace {

struct Texts {
    std::string scenario, caseName, workFolder, kit, pluginName, results, known;
    std::vector<std::string> kinds, modes;
    sweep::WorkerOptions options;
};

sweep::WorkerOptions OptionsOf(const Texts& texts) {
    sweep::WorkerOptions options = texts.options;
    options.scenario = Wide(texts.scenario);
    options.caseName = texts.caseName;
    options.workFolder = Wide(texts.workFolder);
    options.kit = Wide(texts.kit);
    options.pluginName = Wide(texts.pluginName);
    options.results = Wide(texts.results);
    options.known = Wide(texts.known);
    for (const std::string& kind : texts.kinds) {
        options.kinds.push_back(sweep::KindNamed(kind).value());
    }
    for (const std::string& mode : texts.modes) {
        options.modes.push_back(sweep::ModeNamed(mode).value());
    }
    return options;
}

}  // namespace

void AddSweepWorker(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    // An empty group keeps it out of the help.
    CLI::App* const worker = app.add_subcommand("sweep-worker", "")->group("");
    worker->add_option("scenario", texts->scenario)->required();
    worker->add_option("--case", texts->caseName);
    worker->add_option("--work-folder", texts->workFolder)->required();
    worker->add_option("--kit", texts->kit)->required();
    worker->add_option("--plugin-name", texts->pluginName)->required();
    worker->add_option("--results", texts->results)->required();
    worker->add_option("--known", texts->known);
    worker->add_option("--kind", texts->kinds)->allow_extra_args(false);
    worker->add_option("--mode", texts->modes)->allow_extra_args(false);
    worker->add_option("--number", texts->options.number);
    worker->add_option("--every", texts->options.every);
    worker->add_option("--first", texts->options.first);
    worker->add_option("--last", texts->options.last);
    worker->add_option("--replay-every", texts->options.replayEvery);
    worker->callback([texts, &chosen] { chosen = [texts] { return sweep::Work(OptionsOf(*texts)); }; });
}

}  // namespace simhost
