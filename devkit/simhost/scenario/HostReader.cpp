#include "simhost/scenario/HostReader.h"

#include <algorithm>
#include <cstdlib>

#include "doubles/common/Text.h"
#include "simhost/scenario/ObjectReader.h"
#include "simhost/verbs/DocumentVerbs.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::map<std::int32_t, std::string> ReadDefaultFonts(ObjectReader& reader) {
    const Json* const value = reader.Find("default_fonts");
    if (value == nullptr) {
        return {{0, "MyriadPro-Regular"}, {1, "KozMinPr6N-Regular"}};
    }
    std::map<std::int32_t, std::string> fonts;
    for (const auto& [script, name] : value->items()) {
        const std::string place = reader.PlaceOf("default_fonts." + script);
        char* end = nullptr;
        const long code = std::strtol(script.c_str(), &end, 10);
        if (script.empty() || *end != '\0') {
            throw ScenarioError(place, "the key must be a script code");
        }
        fonts[static_cast<std::int32_t>(code)] = TextOf(name, place);
    }
    return fonts;
}

bool IsWritten(const std::vector<FileToMake>& files, const std::string& path, const std::string& workFolder) {
    return std::any_of(files.begin(), files.end(), [&](const FileToMake& file) {
        return file.path == path || workFolder + "\\" + ReplaceAll(file.path, "/", "\\") == path;
    });
}

void ReadDocument(const Json& value, const std::string& name, const std::string& place, const std::string& workFolder,
                  Scenario& scenario) {
    ObjectReader reader(value, place, keys::kDocument);
    Document document;
    document.name = name;
    document.path = reader.Text("path", workFolder + "\\" + name + ".ai");
    document.modified = reader.Flag("modified", false);
    document.frames = ReadFrames(reader.Array("frames"), reader.PlaceOf("frames"));
    document.placed = TextsOf(reader.Array("placed"), reader.PlaceOf("placed"));
    const bool hasFile = reader.Flag("file", document.path.starts_with(workFolder));
    reader.Finish();
    if (hasFile && !IsWritten(scenario.files, document.path, workFolder)) {
        scenario.files.push_back(FileOfDocument(document.path));
    }
    scenario.documents.push_back(std::move(document));
}

void ReadOtherPlugins(ObjectReader& reader, Scenario& scenario) {
    for (const Json& value : reader.Array("plugins")) {
        ObjectReader plugin(value, reader.PlaceOf("plugins"), keys::kPlugin);
        scenario.otherPlugins.push_back(
            {plugin.NeedText("name"), static_cast<std::int32_t>(plugin.Number("result", 0))});
        plugin.Finish();
    }
}

void CheckOwner(const Scenario& scenario, const std::string& owner, const std::string& place) {
    const auto& plugins = scenario.otherPlugins;
    if (!owner.empty() &&
        std::none_of(plugins.begin(), plugins.end(), [&](const auto& plugin) { return plugin.name == owner; })) {
        throw ScenarioError(place, "there is no plug-in \"" + owner + "\"");
    }
}

void ReadMenuItems(ObjectReader& reader, Scenario& scenario) {
    for (const Json& value : reader.Array("menu")) {
        ObjectReader item(value, reader.PlaceOf("menu"), keys::kHostMenuItem);
        MenuItemToMake made;
        made.item.text = item.NeedText("text");
        made.item.group = item.NeedText("group");
        made.item.shortcutKey = item.Text("key", "");
        made.owner = item.Text("owner", "");
        CheckOwner(scenario, made.owner, item.PlaceOf("owner"));
        item.Finish();
        scenario.menuItems.push_back(std::move(made));
    }
}

}  // namespace

void ReadHost(const Json& value, const std::string& place, const std::string& workFolder, Scenario& scenario) {
    ObjectReader reader(value, place, keys::kHost);
    scenario.defaultFonts = ReadDefaultFonts(reader);
    scenario.emptyHandleForNoMatches = reader.Flag("empty_handle_for_no_matches", false);
    scenario.refusedSuites = TextsOf(reader.Array("refused_suites"), reader.PlaceOf("refused_suites"));
    if (const Json* const documents = reader.Find("documents")) {
        for (const auto& [name, document] : documents->items()) {
            ReadDocument(document, name, reader.PlaceOf("documents." + name), workFolder, scenario);
        }
    }
    ReadOtherPlugins(reader, scenario);
    ReadMenuItems(reader, scenario);
    reader.Finish();
}

}  // namespace simhost
