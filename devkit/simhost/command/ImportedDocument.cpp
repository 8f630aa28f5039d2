#include "simhost/command/ImportedDocument.h"

#include <fstream>
#include <iterator>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/scenario/HostReader.h"
#include "simhost/scenario/JsonText.h"
#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/Problems.h"
#include "simhost/scenario/Scenario.h"
#include "simhost/scenario/Values.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kKeys = "title source document";
// For checking, before anybody knows where a run takes place.
const Placeholders kSomePlaceholders = {{"work", "C:\\work"}};

// Without a folder, and without what Windows allows in no name.
bool IsFileName(const std::string& title) {
    return !title.empty() && title != "." && title != ".." && title.find_first_of("\\/:*?\"<>|") == std::string::npos;
}

// `folder` is where the document lies: what its source is relative to, if it is.
ImportedDocument Read(const Json& value, const std::filesystem::path& folder, const Place& place) {
    ObjectReader reader(value, place, kKeys);
    ImportedDocument imported{reader.NeedText("title"), reader.NeedText("source"), Json::object()};
    if (const std::filesystem::path source(Wide(imported.source)); !source.has_root_directory()) {
        imported.source = Utf8((folder / source).wstring());
    }
    if (!IsFileName(imported.title)) {
        reader.PlaceOf("title").Complain("\"" + imported.title + "\" is no name of a file");
    }
    if (!std::filesystem::is_regular_file(Wide(imported.source))) {
        reader.PlaceOf("source").Complain("the document was made from \"" + imported.source +
                                          "\", which is not there any more: import it again");
    }
    if (const Json* const document = reader.Need("document")) {
        const Place within = reader.PlaceOf("document");
        const Json filled = Values(kSomePlaceholders, Json::object(), within).FillIn(*document, within);
        if (filled.is_object() && !filled.contains("path")) {
            within.Complain("needs \"path\"");
        }
        Scenario checked;
        ReadDocument(filled, imported.title, within, kSomePlaceholders.at("work"), checked);
        imported.document = *document;
    }
    reader.Finish();
    return imported;
}

}  // namespace

ImportedDocument ReadImportedDocument(const std::filesystem::path& file) {
    const std::string name = Utf8(file.generic_wstring());
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw ScenarioError({name + ": cannot be read"});
    }
    const JsonText text = ReadJsonText(std::string(std::istreambuf_iterator<char>(stream), {}));
    Problems problems;
    for (const TextMistake& mistake : text.mistakes) {
        problems.Add({mistake.position, text.readable ? mistake.member : "", mistake.words});
    }
    ImportedDocument imported;
    if (text.readable) {
        StoryContext context{name, "", text.positions, problems, kSomePlaceholders.at("work")};
        imported = Read(text.value, std::filesystem::absolute(file).parent_path(), Place(context));
    }
    if (!problems.Empty()) {
        std::vector<std::string> lines = problems.Lines(name, 1);
        lines.insert(lines.begin(), name +
                                        ": is no imported document: scripts/import-document makes one of a PDF, .ai, "
                                        "EPS or SVG");
        throw ScenarioError(std::move(lines));
    }
    return imported;
}

}  // namespace simhost
