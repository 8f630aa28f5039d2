#include <memory>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/launch/PlayCommand.h"

namespace simhost {

namespace {

struct Texts {
    std::vector<std::string> scenarios, cases;
    std::string plugin, workFolder, record;
    std::optional<std::int64_t> timeLimit;
    bool quiet = false;
};

std::vector<std::filesystem::path> Paths(const std::vector<std::string>& texts) {
    std::vector<std::filesystem::path> paths;
    for (const std::string& text : texts) {
        paths.emplace_back(Wide(text));
    }
    return paths;
}

}  // namespace

void AddPlay(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    CLI::App* const play = app.add_subcommand("play", "Play scenarios to the plug-in and print what happens");
    play->add_option("scenario", texts->scenarios, "Scenarios: files, folders of files, and patterns as in menu-*.json")
        ->required();
    play->add_option("--case", texts->cases, "The cases to play, by name or pattern; else all")
        ->allow_extra_args(false);
    play->add_option("--plugin", texts->plugin,
                     "The plug-in's file; else the one that the scenario names, beside this program");
    play->add_option("--work-folder", texts->workFolder,
                     "The folder to play in: emptied first, kept afterwards; else one of its own, removed afterwards");
    play->add_option("--record", texts->record, "Where to write the result as JSON");
    play->add_option("--time-limit", texts->timeLimit, "End each run after so many seconds; else after 60");
    play->add_flag("--quiet", texts->quiet, "Print complaints only");
    play->callback([texts, &chosen] {
        chosen = [texts] {
            return Play({Paths(texts->scenarios), texts->cases, Wide(texts->plugin), Wide(texts->workFolder),
                         Wide(texts->record), texts->timeLimit, texts->quiet});
        };
    });
}

}  // namespace simhost
