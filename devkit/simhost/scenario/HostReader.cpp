#include "simhost/scenario/HostReader.h"

#include <algorithm>
#include <cstdlib>

#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/StepReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::map<std::int32_t, std::string> ReadDefaultFonts(ObjectReader& reader) {
    std::map<std::int32_t, std::string> fonts;
    if (const Json* const value = reader.Find("default_fonts")) {
        for (const auto& [script, name] : value->items()) {
            const std::string place = reader.PlaceOf("default_fonts." + script);
            char* end = nullptr;
            const long code = std::strtol(script.c_str(), &end, 10);
            if (script.empty() || *end != '\0') {
                throw ScenarioError(place, "the key must be a script code");
            }
            fonts[static_cast<std::int32_t>(code)] = TextOf(name, place);
        }
    }
    return fonts;
}

Document ReadDocument(const Json& value, const std::string& name, const std::string& place) {
    ObjectReader reader(value, place);
    Document document;
    document.name = name;
    document.path = reader.NeedText("path");
    document.modified = reader.Flag("modified", false);
    document.frames = ReadFrames(reader.Array("frames"), reader.PlaceOf("frames"));
    document.placed = TextsOf(reader.Array("placed"), reader.PlaceOf("placed"));
    reader.Finish();
    return document;
}

void ReadOtherPlugins(ObjectReader& reader, Scenario& scenario) {
    for (const Json& value : reader.Array("plugins")) {
        ObjectReader plugin(value, reader.PlaceOf("plugins"));
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
        ObjectReader item(value, reader.PlaceOf("menu"));
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

void ReadHost(const Json& value, const std::string& place, Scenario& scenario) {
    ObjectReader reader(value, place);
    scenario.defaultFonts = ReadDefaultFonts(reader);
    scenario.emptyHandleForNoMatches = reader.Flag("empty_handle_for_no_matches", false);
    scenario.refusedSuites = TextsOf(reader.Array("refused_suites"), reader.PlaceOf("refused_suites"));
    if (const Json* const documents = reader.Find("documents")) {
        for (const auto& [name, document] : documents->items()) {
            scenario.documents.push_back(ReadDocument(document, name, reader.PlaceOf("documents." + name)));
        }
    }
    ReadOtherPlugins(reader, scenario);
    ReadMenuItems(reader, scenario);
    reader.Finish();
}

}  // namespace simhost
