#include "simhost/scenario/UsualCalls.h"

namespace simhost {

using Json = nlohmann::ordered_json;

const Json& UsualLists() {
    static const Json* const sLists = new Json(Json::parse(R"({
        "start-up": [
            {"usual": "start-up until the menus"},
            "CreateMenusFromJSONBuffer",
            {"usual": "start-up after the menus"}
        ],
        "start-up with a word file": [
            {"usual": "start-up until the menus"},
            "CreateMenusFromJSONBuffer",
            "PluginIsEnabled",
            "GetAPIVersion"
        ],
        "start-up until the menus": [
            "GetAPIVersion",
            {"InitializePluginCoreInterface": {"text": "${plugin}"}},
            "GetMenus"
        ],
        "start-up after the menus": ["PluginIsEnabled", "GetAPIVersion", "GetSettings"],
        "tick": ["IdleEvent", "ProcessPanelMessages"],
        "shut-down": ["TerminatePluginCoreInterface", "GetAPIVersion", "GetSettings"],
        "shut-down with a word file": ["TerminatePluginCoreInterface", "GetAPIVersion"]
    })"));
    return *sLists;
}

std::vector<std::string> NamesOfUsualLists() {
    std::vector<std::string> names;
    for (const auto& [name, list] : UsualLists().items()) {
        names.push_back(name);
    }
    return names;
}

}  // namespace simhost
