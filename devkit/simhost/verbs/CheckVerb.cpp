#include "simhost/verbs/CheckVerb.h"

#include "host/MenuSuite.h"
#include "simhost/checks/PresentState.h"
#include "simhost/report/ValueDifference.h"
#include "simhost/run/Performance.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

Json ReadGroups(ObjectReader& reader, const char* key);

// "host", one of the other plug-ins, or nothing: the plug-in itself.
std::string ReadOwner(ObjectReader& reader) {
    std::string owner = reader.Text("owner", "");
    const auto& plugins = reader.OwnPlace().Context().known.otherPlugins;
    std::vector<std::string> known(plugins.begin(), plugins.end());
    known.insert(known.end(), {"", "host"});
    CheckKnown(owner, "plug-in", known, reader.PlaceOf("owner"));
    return owner;
}

Json ReadMenuItem(ObjectReader& reader) {
    return {{"text", reader.NeedText("text")},         {"options", reader.Int32("options", kMenuItemWantsUpdateOption)},
            {"enabled", reader.Flag("enabled", true)}, {"checked", reader.Flag("checked", false)},
            {"key", reader.Text("key", "")},           {"owner", ReadOwner(reader)},
            {"groups", ReadGroups(reader, "groups")}};
}

Json ReadGroups(ObjectReader& reader, const char* key) {
    Json groups = Json::array();
    reader.ForEach(key, keys::kMenuGroup, [&](ObjectReader& group) {
        Json items = Json::array();
        group.ForEach("items", keys::kMenuItem, [&](ObjectReader& item) { items.push_back(ReadMenuItem(item)); });
        groups.push_back({{"group", group.NeedText("group")}, {"items", std::move(items)}});
    });
    return groups;
}

Json ReadTimers(ObjectReader& reader, const char* key) {
    Json timers = Json::array();
    reader.ForEach(key, keys::kTimer, [&](ObjectReader& timer) {
        timers.push_back({{"name", timer.NeedText("name")},
                          {"period", timer.NeedInt32("period")},
                          {"active", timer.Flag("active", true)}});
    });
    return timers;
}

Json ReadFileFormats(ObjectReader& reader, const char* key) {
    Json formats = Json::array();
    reader.ForEach(key, keys::kFileFormat, [&](ObjectReader& format) {
        const Json* const types = format.Need("types");
        formats.push_back(
            {{"name", format.NeedText("name")},
             {"types", types == nullptr ? std::vector<std::string>() : TextsOf(*types, format.PlaceOf("types"))},
             {"title", format.NeedText("title")},
             {"title_order", format.NeedInt32("title_order")},
             {"extensions", format.NeedText("extensions")},
             {"options", format.NeedInt32("options")},
             {"extended_options", format.NeedInt32("extended_options")},
             {"priority", format.NeedInt32("priority")}});
    });
    return formats;
}

Json ReadSentMessages(ObjectReader& reader, const char* key) {
    Json messages = Json::array();
    reader.ForEach(key, keys::kSentMessage, [&](ObjectReader& message) {
        messages.push_back({{"to", message.NeedText("to")},
                            {"caller", message.NeedText("caller")},
                            {"selector", message.NeedText("selector")},
                            {"item", message.Text("item", "")},
                            {"set_up", message.Flag("set_up", true)}});
    });
    return messages;
}

struct KindRow {
    const char* key;
    Json (*read)(ObjectReader& reader, const char* key);
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
            check.state[kind.key] = kind.read(reader, kind.key);
        }
    }
    if (check.state.empty()) {
        reader.OwnPlace().Complain("says nothing that could be checked");
    }
    return check;
}

void Perform(const CheckState& action, Performance& performance) {
    const Json present = PresentState();
    for (const auto& [kind, expected] : action.state.items()) {
        performance.Observed(kind, present[kind]);
    }
    if (action.state.contains("menu")) {
        for (const std::string& line : MenuLines(present["menu"])) {
            performance.Tell(line);
        }
    }
    const std::string difference = DifferenceOfStates(action.state, present);
    if (!difference.empty()) {
        Json found = Json::object();
        for (const auto& [kind, expected] : action.state.items()) {
            found[kind] = present[kind];
        }
        performance.Broken(Rule::kState, difference, LinesOfDifference(action.state, found));
    }
}

}  // namespace simhost
