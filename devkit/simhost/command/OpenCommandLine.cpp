#include <memory>
#include <string>

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
    std::string document;
    RunTexts run;
};

int Open(const Texts& texts) {
    const ImportedDocument imported = ReadImportedDocument(Wide(texts.document));
    ListenForCancellation();
    PlayOptions options = OptionsOf(texts.run);
    const GeneratedScenario scenario(L"open.json", ScenarioThatOpens(imported), !options.noWait);
    options.scenarios = {scenario.Path()};
    options.documents = {Wide(texts.document), Wide(imported.source)};
    options.repeatedBy = "open " + AsShellWord(texts.document);
    return Play(options);
}

}  // namespace

void AddOpen(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    CLI::App* const open = app.add_subcommand(
        "open", "Open, change, save and close a real document, and print what the PluginCore is told");
    open->add_option("document", texts->document, "What scripts/import-document has made of the document")->required();
    AddRunOptions(*open, texts->run);
    open->callback([texts, &chosen] { chosen = [texts] { return Open(*texts); }; });
}

}  // namespace simhost
