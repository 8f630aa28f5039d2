#include <memory>
#include <string>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/launch/PlayCommand.h"

namespace simhost {

namespace {

struct Texts {
    std::string scenario, caseName, plugin, workFolder, record;
    std::optional<std::int64_t> timeLimit;
    bool quiet = false;
};

}  // namespace

void AddPlay(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    CLI::App* const play = app.add_subcommand("play", "Play scenarios to the plug-in and print what happens");
    play->add_option("scenario", texts->scenario, "A scenario's JSON file, or a folder of them")->required();
    play->add_option("--case", texts->caseName, "The one case to play; else all of the file");
    play->add_option("--plugin", texts->plugin,
                     "The plug-in's file; else the one that the scenario names, beside this program");
    play->add_option("--work-folder", texts->workFolder,
                     "The folder to play in: emptied first, kept afterwards; else one of its own, removed afterwards");
    play->add_option("--record", texts->record, "Where to write the result as JSON");
    play->add_option("--time-limit", texts->timeLimit, "End each run after so many seconds; else after 60");
    play->add_flag("--quiet", texts->quiet, "Print complaints only");
    play->callback([texts, &chosen] {
        chosen = [texts] {
            return Play({Wide(texts->scenario), texts->caseName, Wide(texts->plugin), Wide(texts->workFolder),
                         Wide(texts->record), texts->timeLimit, texts->quiet});
        };
    });
}

}  // namespace simhost
