#include "simhost/scenario/HostReader.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "doubles/common/Text.h"
#include "doubles/host/OperationList.h"
#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/PathsOfRun.h"
#include "simhost/verbs/DocumentVerbs.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::map<std::int32_t, std::string> ReadDefaultFonts(ObjectReader& reader) {
    if (reader.Find("default_fonts") == nullptr) {
        return {{0, "MyriadPro-Regular"}, {1, "KozMinPr6N-Regular"}};
    }
    std::map<std::int32_t, std::string> fonts;
    for (const auto& [script, name] : reader.Object("default_fonts").items()) {
        const Place place = reader.PlaceOf("default_fonts").Member(script);
        std::int32_t code = 0;
        const auto [end, error] = std::from_chars(script.data(), script.data() + script.size(), code);
        if (error != std::errc() || end != script.data() + script.size()) {
            place.ComplainOfKey("\"" + script + "\" is no script code");
        }
        fonts[code] = TextOf(name, place);
    }
    return fonts;
}

bool IsWritten(const std::vector<FileToMake>& files, const std::string& path, const std::string& workFolder) {
    return std::any_of(files.begin(), files.end(),
                       [&](const FileToMake& file) { return IsSameInRun(file.path, path, workFolder); });
}

void ReadRefusedSuites(ObjectReader& reader, Scenario& scenario) {
    if (const Json* const value = reader.Find("refused_suites")) {
        const Place place = reader.PlaceOf("refused_suites");
        scenario.refusedSuites = TextsOf(*value, place);
        for (std::size_t i = 0; i < scenario.refusedSuites.size(); ++i) {
            CheckKnown(scenario.refusedSuites[i], "suite", SuiteNames(), place.Element(i));
        }
    }
}

void ReadOtherPlugins(ObjectReader& reader, Scenario& scenario) {
    reader.ForEach("plugins", keys::kPlugin, [&](ObjectReader& plugin) {
        scenario.otherPlugins.push_back({plugin.NeedText("name"), plugin.Int32("result", 0)});
        plugin.OwnPlace().Context().known.otherPlugins.insert(scenario.otherPlugins.back().name);
    });
}

void ReadMenuItems(ObjectReader& reader, Scenario& scenario) {
    reader.ForEach("menu", keys::kHostMenuItem, [&](ObjectReader& item) {
        MenuItemToMake made;
        made.item.text = item.NeedText("text");
        made.item.group = item.NeedText("group");
        made.item.shortcutKey = item.Text("key", "");
        made.owner = item.Text("owner", "");
        if (!made.owner.empty()) {
            const auto& known = item.OwnPlace().Context().known.otherPlugins;
            CheckKnown(made.owner, "plug-in", {known.begin(), known.end()}, item.PlaceOf("owner"));
        }
        scenario.menuItems.push_back(std::move(made));
    });
}

}  // namespace

void ReadDocument(const Json& value, const std::string& name, const Place& place, const std::string& workFolder,
                  Scenario& scenario) {
    ObjectReader reader(value, place, keys::kDocument);
    Document document;
    document.name = name;
    document.path = reader.Text("path", workFolder + "\\" + name + ".ai");
    document.modified = reader.Flag("modified", false);
    document.frames = ReadFrames(reader);
    if (const Json* const placed = reader.Find("placed")) {
        document.placed = TextsOf(*placed, reader.PlaceOf("placed"));
    }
    const bool hasFile = reader.Flag("file", IsInFolder(document.path, workFolder));
    reader.Finish();
    if (hasFile && !IsWritten(scenario.files, document.path, workFolder)) {
        CheckPathInRun(document.path, place);
        scenario.files.push_back(FileOfDocument(document.path));
    }
    place.Context().known.documents.insert(name);
    scenario.documents.push_back(std::move(document));
}

void ReadHost(const Json& value, const Place& place, const std::string& workFolder, Scenario& scenario) {
    ObjectReader reader(value, place, keys::kHost);
    scenario.defaultFonts = ReadDefaultFonts(reader);
    scenario.emptyHandleForNoMatches = reader.Flag("empty_handle_for_no_matches", false);
    ReadRefusedSuites(reader, scenario);
    for (const auto& [name, document] : reader.Object("documents").items()) {
        ReadDocument(document, name, reader.PlaceOf("documents").Member(name), workFolder, scenario);
    }
    ReadOtherPlugins(reader, scenario);
    ReadMenuItems(reader, scenario);
    reader.Finish();
}

}  // namespace simhost
