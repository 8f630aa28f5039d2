#include "simhost/scenario/ExpectedState.h"

#include "host/MenuSuite.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

Json ReadGroups(const Json& array, const std::string& place);

Json ReadMenuItem(const Json& value, const std::string& place) {
    ObjectReader reader(value, place);
    Json item = {{"text", reader.NeedText("text")},
                 {"options", reader.Number("options", kMenuItemWantsUpdateOption)},
                 {"enabled", reader.Flag("enabled", true)},
                 {"checked", reader.Flag("checked", false)},
                 {"key", reader.Text("key", "")},
                 {"owner", reader.Text("owner", "")},
                 {"groups", ReadGroups(reader.Array("groups"), reader.PlaceOf("groups"))}};
    reader.Finish();
    return item;
}

Json ReadGroups(const Json& array, const std::string& place) {
    Json groups = Json::array();
    for (const Json& value : array) {
        ObjectReader reader(value, place);
        Json items = Json::array();
        for (const Json& item : reader.Array("items")) {
            items.push_back(ReadMenuItem(item, reader.PlaceOf("items")));
        }
        groups.push_back({{"group", reader.NeedText("group")}, {"items", std::move(items)}});
        reader.Finish();
    }
    return groups;
}

Json ReadTimers(const Json& array, const std::string& place) {
    Json timers = Json::array();
    for (const Json& value : array) {
        ObjectReader reader(value, place);
        timers.push_back({{"name", reader.NeedText("name")},
                          {"period", NumberOf(reader.Need("period"), reader.PlaceOf("period"))},
                          {"active", reader.Flag("active", true)}});
        reader.Finish();
    }
    return timers;
}

Json ReadFileFormats(const Json& array, const std::string& place) {
    Json formats = Json::array();
    for (const Json& value : array) {
        ObjectReader reader(value, place);
        formats.push_back({{"name", reader.NeedText("name")},
                           {"types", TextsOf(reader.Array("types"), reader.PlaceOf("types"))},
                           {"title", reader.NeedText("title")},
                           {"title_order", NumberOf(reader.Need("title_order"), place)},
                           {"extensions", reader.NeedText("extensions")},
                           {"options", NumberOf(reader.Need("options"), place)},
                           {"extended_options", NumberOf(reader.Need("extended_options"), place)},
                           {"priority", NumberOf(reader.Need("priority"), place)}});
        reader.Finish();
    }
    return formats;
}

Json ReadSentMessages(const Json& array, const std::string& place) {
    Json messages = Json::array();
    for (const Json& value : array) {
        ObjectReader reader(value, place);
        messages.push_back({{"to", reader.NeedText("to")},
                            {"caller", reader.NeedText("caller")},
                            {"selector", reader.NeedText("selector")},
                            {"item", reader.Text("item", "")},
                            {"set_up", reader.Flag("set_up", true)}});
        reader.Finish();
    }
    return messages;
}

struct KindRow {
    const char* key;
    Json (*read)(const Json& array, const std::string& place);
};

constexpr KindRow kKinds[] = {
    {"menu", &ReadGroups},
    {"timers", &ReadTimers},
    {"file_formats", &ReadFileFormats},
    {"messages", &ReadSentMessages},
};

}  // namespace

nlohmann::ordered_json ReadExpectedState(ObjectReader& step) {
    Json state = Json::object();
    for (const KindRow& kind : kKinds) {
        if (step.Find(kind.key) != nullptr) {
            state[kind.key] = kind.read(step.Array(kind.key), step.PlaceOf(kind.key));
        }
    }
    if (state.empty()) {
        throw ScenarioError(step.Place(), "says nothing that could be checked");
    }
    return state;
}

}  // namespace simhost
