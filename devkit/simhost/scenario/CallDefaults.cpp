#include "simhost/scenario/CallDefaults.h"

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

const Json& Defaults() {
    static const Json* const sDefaults = new Json(Json::parse(R"({
        "ActivateChosenFonts": {"capacity": 32767},
        "CreateMenusFromJSONBuffer": {"json": "", "callback": "set", "context": "set", "items": []},
        "GetAPIVersion": {"preset": 0, "interface_version": 1},
        "GetIDForDocument": {"path": "", "capacity": 256, "zeroed": true},
        "GetMenus": {"path": "", "capacity": 4096, "zeroed": true},
        "GetSettings": {"capacity": 8192, "zeroed": true},
        "GetSocketPort": {"preset": 0},
        "HandleCreateNewDocument": {"capacity": 256, "zeroed": true},
        "HandleOpenExistingDocument": {"capacity": 32767, "zeroed": true},
        "InvokeCommandDialog": {"capacity": 256, "zeroed": true},
        "InvokeResolveDialog": {"capacity": 32767},
        "PluginIsEnabled": {"flag": 1, "preset": 0},
        "ProcessPanelMessages": {"flag": 1},
        "RegisterPlugPlug": {"state": "module, load, unload, add, remove, dispatch"},
        "PlugPlugAddEventListener":
            {"type": "com.quorvel.portnumberrequest", "listener": "set", "context": "null"},
        "PlugPlugDispatchEvent":
            {"type": "com.quorvel.portnumberresponse", "scope": 1, "application": "test", "extension": null}
    })"));
    return *sDefaults;
}

// The record has lists under this name alone; any other array or object is a JSON text.
constexpr const char* kNameOfLists = "items";

Json FullArguments(const std::string& entry, const Json& written, const std::string& place) {
    if (!written.is_object()) {
        throw ScenarioError(place, "the arguments of " + entry + " must be an object");
    }
    Json arguments = written;
    for (auto& [name, value] : arguments.items()) {
        if (value.is_structured() && name != kNameOfLists) {
            value = value.dump();
        }
    }
    const Json defaults = Defaults().value(entry, Json::object());
    for (const auto& [name, value] : defaults.items()) {
        if (!arguments.contains(name)) {
            arguments[name] = value;
        }
    }
    return arguments;
}

}  // namespace

Json FullCall(const Json& call, const std::string& place) {
    if (call.is_string()) {
        return {{call.get<std::string>(), FullArguments(call.get<std::string>(), Json::object(), place)}};
    }
    if (!call.is_object() || call.size() != 1) {
        throw ScenarioError(place, "an expected call is a name or an object with one member");
    }
    const std::string& entry = call.begin().key();
    return {{entry, FullArguments(entry, call.begin().value(), place)}};
}

}  // namespace simhost
