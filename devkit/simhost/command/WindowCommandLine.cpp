#include <windows.h>

#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/command/GeneratedScenario.h"
#include "simhost/command/RunTexts.h"
#include "simhost/launch/Cancellation.h"
#include "simhost/launch/PlayCommand.h"
#include "simhost/report/Summary.h"

namespace simhost {

namespace {

struct Texts {
    std::vector<std::string> documents;
    RunTexts run;
};

// The host tells its documents apart by their names, and Windows their files, without regard to case.
void CheckNamesDiffer(const std::vector<ImportedDocument>& documents) {
    std::map<std::wstring, std::string> titles;
    for (const ImportedDocument& document : documents) {
        std::wstring folded = Wide(document.title);
        CharUpperW(folded.data());
        if (const auto [other, isNew] = titles.emplace(folded, document.source); !isNew) {
            throw std::runtime_error("two documents have the same name: " + other->second + " and " + document.source +
                                     "; rename one of the files, and import it again");
        }
    }
}

int ShowWindow(const Texts& texts) {
    std::vector<ImportedDocument> documents;
    std::vector<std::filesystem::path> files;
    std::string command = "window";
    for (const std::string& document : texts.documents) {
        documents.push_back(ReadImportedDocument(Wide(document)));
        files.insert(files.end(), {Wide(document), Wide(documents.back().source)});
        command += " " + AsShellWord(document);
    }
    CheckNamesDiffer(documents);
    ListenForCancellation();
    PlayOptions options = OptionsOf(texts.run);
    const GeneratedScenario scenario(L"window.json", ScenarioWithWindow(documents), !options.noWait);
    options.scenarios = {scenario.Path()};
    options.documents = std::move(files);
    options.repeatedBy = command;
    return Play(options);
}

}  // namespace

void AddWindow(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    CLI::App* const window = app.add_subcommand("window", "Show a host to operate by hand, and print what happens");
    window->add_option("document", texts->documents,
                       "Documents to have at hand, as scripts/import-document makes them; else an example");
    AddRunOptions(*window, texts->run);
    window->callback([texts, &chosen] { chosen = [texts] { return ShowWindow(*texts); }; });
}

}  // namespace simhost
