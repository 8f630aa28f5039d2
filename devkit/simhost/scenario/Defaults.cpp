#include "simhost/scenario/Defaults.h"

#include "simhost/scenario/CallDefaults.h"
#include "simhost/scenario/ObjectReader.h"

namespace simhost {

namespace {

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

Json DefaultBegin() {
    return Json::parse(R"([{"do": "startup", "say": "The host starts", "calls": [{"usual": "start-up"}]}])");
}

Json DefaultEnd() {
    return Json::parse(R"([
        {"do": "application_shutdown", "say": "The host quits", "calls": [{"usual": "shut-down"}]},
        {"do": "shutdown", "calls": []},
        {"do": "unload", "calls": []}
    ])");
}

// "none", an array of steps, or an object that changes the first step of the default.
Json StepsOf(const Json& story, const char* key, Json usual, const std::string& place) {
    if (!story.contains(key)) {
        return usual;
    }
    const Json& written = story.at(key);
    if (written == "none") {
        return Json::array();
    }
    if (written.is_object()) {
        usual.front().update(written);
        return usual;
    }
    if (!written.is_array()) {
        throw ScenarioError(place + "." + key, "must be \"none\", an array of steps or an object");
    }
    return written;
}

Json TextOfAnswer(const Json& text) { return text.is_structured() ? Json(text.dump()) : text; }

// A text in an answer may be written as the JSON value that it stands for.
void WriteAnswerTexts(Json& answers, const std::string& place) {
    if (!answers.is_object()) {
        throw ScenarioError(place, "must be an object");
    }
    for (auto& [entry, list] : answers.items()) {
        if (!list.is_array()) {
            throw ScenarioError(place + "." + entry, "must be an array");
        }
        for (Json& answer : list) {
            if (answer.is_object() && answer.contains("text")) {
                answer["text"] = TextOfAnswer(answer["text"]);
            }
        }
    }
}

class CallWriter {
  public:
    // `menus` is what the PluginCore answers the first GetMenus: the plug-in passes it on to CreateMenusFromJSONBuffer.
    explicit CallWriter(std::string menus) : mMenus(std::move(menus)) {}

    void WriteSteps(Json& steps, const std::string& place) const {
        for (std::size_t i = 0; i < steps.size(); ++i) {
            WriteStep(steps[i], place + "[" + std::to_string(i) + "]");
        }
    }

  private:
    void WriteStep(Json& step, const std::string& place) const {
        if (!step.is_object()) {
            return;  // the reader will complain
        }
        for (const char* const key : {"calls", "bus_calls"}) {
            if (step.contains(key) && step[key].is_array()) {
                step[key] = Written(step[key], place + "." + key);
            }
        }
        if (step.contains("set")) {
            WriteAnswerTexts(step["set"], place + ".set");
        }
    }

    Json Written(const Json& calls, const std::string& place) const {
        Json written = Json::array();
        for (const Json& call : calls) {
            if (call.is_object() && call.contains("usual")) {
                const Json list = UsualList(call, place);
                written.insert(written.end(), list.begin(), list.end());
            } else {
                written.push_back(FullCall(WithMenus(call), place));
            }
        }
        return written;
    }

    // {"usual": name}, and for a start-up "items": what the PluginCore asks the plug-in to add to the menu.
    Json UsualList(const Json& call, const std::string& place) const {
        ObjectReader reader(call, place, keys::kUsual);
        const std::string name = reader.NeedText("usual");
        const Json* const items = reader.Find("items");
        reader.Finish();
        if (!UsualLists().contains(name)) {
            throw ScenarioError(place, "there are no usual calls \"" + name + "\"");
        }
        Json list = Written(UsualLists().at(name), place);
        if (items == nullptr) {
            return list;
        }
        for (Json& each : list) {
            if (each.contains("CreateMenusFromJSONBuffer")) {
                each["CreateMenusFromJSONBuffer"]["items"] = *items;
                return list;
            }
        }
        throw ScenarioError(place, "the usual calls \"" + name + "\" create no menus");
    }

    Json WithMenus(const Json& call) const {
        constexpr const char* kEntry = "CreateMenusFromJSONBuffer";
        Json written = call.is_string() && call == kEntry ? Json{{kEntry, Json::object()}} : call;
        if (written.is_object() && written.contains(kEntry) && !written[kEntry].contains("json")) {
            written[kEntry]["json"] = mMenus;
        }
        return written;
    }

    std::string mMenus;
};

std::string FirstMenus(const Json& story) {
    const Json::json_pointer first("/answers/GetMenus/0/text");
    return story.contains(first) ? story.at(first).get<std::string>() : "";
}

}  // namespace

void WriteDefaults(Json& story, const std::string& place) {
    for (const char* const key : {"answers", "bus_answers"}) {
        if (story.contains(key)) {
            WriteAnswerTexts(story[key], place + "." + key);
        }
    }
    story["begin"] = StepsOf(story, "begin", DefaultBegin(), place);
    story["end"] = StepsOf(story, "end", DefaultEnd(), place);
    const CallWriter calls(FirstMenus(story));
    for (const char* const key : {"begin", "steps", "end"}) {
        if (story.contains(key) && story[key].is_array()) {
            calls.WriteSteps(story[key], place + "." + key);
        }
    }
}

}  // namespace simhost
