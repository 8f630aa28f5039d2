#include <memory>
#include <string>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/command/GeneratedScenario.h"
#include "simhost/launch/Cancellation.h"
#include "simhost/launch/PlayCommand.h"
#include "simhost/report/Summary.h"

namespace simhost {

namespace {

struct Texts {
    std::string document, plugin, pluginCore, record, jsonLines;
    bool quiet = false;
};

int Open(const Texts& texts) {
    const ImportedDocument imported = ReadImportedDocument(Wide(texts.document));
    ListenForCancellation();
    const GeneratedScenario scenario(ScenarioThatOpens(imported));
    PlayOptions options;
    options.scenarios = {scenario.Path()};
    options.repeatedBy = "open " + AsShellWord(texts.document);
    options.plugin = Wide(texts.plugin);
    options.pluginCore = Wide(texts.pluginCore);
    options.record = Wide(texts.record);
    options.jsonLines = Wide(texts.jsonLines);
    options.tell.verbosity = texts.quiet ? Verbosity::kQuiet : Verbosity::kFull;
    return Play(options);
}

}  // namespace

void AddOpen(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    CLI::App* const open = app.add_subcommand(
        "open", "Open, change, save and close a real document, and print what the PluginCore is told");
    open->add_option("document", texts->document, "What scripts/import-document has made of the document")->required();
    open->add_option("--plugin", texts->plugin, "The plug-in's file; else the shipped one, beside this program");
    open->add_option("--plugincore", texts->pluginCore, "Your PluginCore, in place of the double");
    open->add_option("--record", texts->record, "Where to write the result as JSON");
    open->add_option("--json-lines", texts->jsonLines,
                     "Where to append all that happens, one JSON object a line; - for standard output");
    open->add_flag("--quiet", texts->quiet, "Print complaints only");
    open->callback([texts, &chosen] { chosen = [texts] { return Open(*texts); }; });
}

}  // namespace simhost
