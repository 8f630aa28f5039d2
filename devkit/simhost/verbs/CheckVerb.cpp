#include "simhost/verbs/CheckVerb.h"

#include "host/MenuSuite.h"
#include "simhost/checks/PresentState.h"
#include "simhost/run/Performance.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

Json ReadGroups(const Json& array, const std::string& place);

Json ReadMenuItem(const Json& value, const std::string& place) {
    ObjectReader reader(value, place, keys::kMenuItem);
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
        ObjectReader reader(value, place, keys::kMenuGroup);
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
        ObjectReader reader(value, place, keys::kTimer);
        timers.push_back({{"name", reader.NeedText("name")},
                          {"period", reader.NeedNumber("period")},
                          {"active", reader.Flag("active", true)}});
        reader.Finish();
    }
    return timers;
}

Json ReadFileFormats(const Json& array, const std::string& place) {
    Json formats = Json::array();
    for (const Json& value : array) {
        ObjectReader reader(value, place, keys::kFileFormat);
        formats.push_back({{"name", reader.NeedText("name")},
                           {"types", TextsOf(reader.Array("types"), reader.PlaceOf("types"))},
                           {"title", reader.NeedText("title")},
                           {"title_order", reader.NeedNumber("title_order")},
                           {"extensions", reader.NeedText("extensions")},
                           {"options", reader.NeedNumber("options")},
                           {"extended_options", reader.NeedNumber("extended_options")},
                           {"priority", reader.NeedNumber("priority")}});
        reader.Finish();
    }
    return formats;
}

Json ReadSentMessages(const Json& array, const std::string& place) {
    Json messages = Json::array();
    for (const Json& value : array) {
        ObjectReader reader(value, place, keys::kSentMessage);
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

CheckState ReadCheckState(ObjectReader& reader) {
    CheckState check{Json::object()};
    for (const KindRow& kind : kKinds) {
        if (reader.Find(kind.key) != nullptr) {
            check.state[kind.key] = kind.read(reader.Array(kind.key), reader.PlaceOf(kind.key));
        }
    }
    if (check.state.empty()) {
        throw ScenarioError(reader.Place(), "says nothing that could be checked");
    }
    return check;
}

void Perform(const CheckState& action, Performance& performance) {
    const Json present = PresentState();
    if (action.state.contains("menu")) {
        for (const std::string& line : MenuLines(present["menu"])) {
            performance.Tell(line);
        }
    }
    const std::string difference = DifferenceOfStates(action.state, present);
    if (!difference.empty()) {
        performance.Broken(Rule::kState, difference);
    }
}

}  // namespace simhost
