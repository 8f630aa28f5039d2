#include <memory>
#include <string>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/run/PerformCommand.h"

namespace simhost {

namespace {

struct Texts {
    std::string scenario, caseName, workFolder, pluginName, record, events;
    Verbosity verbosity = Verbosity::kFull;
    ColourChoice colour = ColourChoice::kAuto;
    Variation variation;
};

}  // namespace

void AddPerform(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    // An empty group keeps it out of the help.
    CLI::App* const perform = app.add_subcommand("perform", "")->group("");
    perform->add_option("scenario", texts->scenario)->required();
    perform->add_option("--case", texts->caseName);
    perform->add_option("--work-folder", texts->workFolder)->required();
    perform->add_option("--plugin-name", texts->pluginName)->required();
    perform->add_option("--record", texts->record)->required();
    perform->add_option("--events", texts->events);
    perform->add_option("--verbosity", texts->verbosity);
    perform->add_option("--colour", texts->colour);
    perform->add_option("--until", texts->variation.until);
    perform->add_option("--seed", texts->variation.seed);
    perform->callback([texts, &chosen] {
        chosen = [texts] {
            return Perform({Wide(texts->scenario),
                            texts->caseName,
                            Wide(texts->workFolder),
                            Wide(texts->pluginName),
                            Wide(texts->record),
                            {texts->verbosity, texts->colour, Wide(texts->events)},
                            texts->variation});
        };
    });
}

}  // namespace simhost
