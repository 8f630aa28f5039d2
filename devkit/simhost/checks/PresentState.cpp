#include "simhost/checks/PresentState.h"

#include "doubles/common/Text.h"
#include "doubles/host/Host.h"
#include "host/MenuSuite.h"
#include "simhost/plugin/MessageDriver.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// The plug-in that is tested has no name.
std::string OwnerName(SPPluginRef owner) {
    const OtherPlugin* const other = Host().model.otherPlugins.Find(owner);
    return owner == kPluginRef ? "" : other == nullptr ? "host" : other->name;
}

Json GroupsOn(const void* item);

Json DescribeItem(const void* handle) {
    const MenuItem& item = *Host().model.menus.items.Find(handle);
    return {{"text", item.text},
            {"options", item.options},
            {"enabled", item.enabled},
            {"checked", item.checked},
            {"key", item.shortcutKey.value_or("")},
            {"owner", OwnerName(item.owner)},
            {"groups", GroupsOn(handle)}};
}

Json GroupsOn(const void* item) {
    Json groups = Json::array();
    for (const MenuGroup& group : Host().model.menus.GroupsOf(item)) {
        Json items = Json::array();
        for (const void* const handle : Host().model.menus.ItemsIn(group.name)) {
            items.push_back(DescribeItem(handle));
        }
        groups.push_back({{"group", group.name}, {"items", std::move(items)}});
    }
    return groups;
}

Json PresentTimers() {
    Json timers = Json::array();
    for (const auto& [handle, timer] : Host().model.timers.Objects()) {
        timers.push_back({{"name", timer.name}, {"period", timer.period}, {"active", timer.active != 0}});
    }
    return timers;
}

Json DescribeFormat(const FileFormat& format) {
    Json types = Json::array();
    for (const std::uint32_t type : format.types) {
        types.push_back(FourCharacters(type));
    }
    return {{"name", format.name},
            {"types", std::move(types)},
            {"title", format.title},
            {"title_order", format.titleOrder},
            {"extensions", format.extensions},
            {"options", format.options},
            {"extended_options", format.extendedOptions},
            {"priority", format.priority}};
}

Json PresentFileFormats() {
    Json formats = Json::array();
    for (const auto& [handle, format] : Host().model.fileFormats.Objects()) {
        formats.push_back(DescribeFormat(format));
    }
    return formats;
}

Json PresentMessages() {
    Json messages = Json::array();
    for (const SentMessage& message : Host().model.sentMessages) {
        const MenuItem* const item = Host().model.menus.items.Find(message.menuItem);
        messages.push_back({{"to", message.to},
                            {"caller", message.caller},
                            {"selector", message.selector},
                            {"item", item == nullptr ? "" : item->text},
                            {"set_up", message.setUp}});
    }
    return messages;
}

void AddMenuLines(const Json& groups, int depth, std::vector<std::string>& lines) {
    const std::string indent(static_cast<std::size_t>(depth) * 4, ' ');
    for (const Json& group : groups) {
        lines.push_back(indent + "[" + group.at("group").get<std::string>() + "]");
        for (const Json& item : group.at("items")) {
            const bool separator = item.at("options") == kMenuItemIsSeparator;
            lines.push_back(indent + "  " + (separator ? "----" : item.at("text").get<std::string>()) +
                            (item.at("checked") == true ? " (checked)" : "") +
                            (item.at("enabled") == true ? "" : " (disabled)"));
            AddMenuLines(item.at("groups"), depth + 1, lines);
        }
    }
}

}  // namespace

nlohmann::ordered_json PresentState() {
    return {{"menu", GroupsOn(nullptr)},
            {"timers", PresentTimers()},
            {"file_formats", PresentFileFormats()},
            {"messages", PresentMessages()}};
}

std::string DifferenceOfStates(const Json& expected, const Json& present) {
    for (const auto& [kind, members] : expected.items()) {
        const Json& found = present.at(kind);
        if (members == found) {
            continue;
        }
        // The way to the first difference, and all that is there.
        const Json difference = Json::diff(members, found);
        return kind + difference.at(0).at("path").get<std::string>() + ": expected " + members.dump() + ", found " +
               found.dump();
    }
    return {};
}

std::vector<std::string> MenuLines(const Json& groups) {
    std::vector<std::string> lines;
    AddMenuLines(groups, 0, lines);
    return lines;
}

}  // namespace simhost
