#include "simhost/scenario/Defaults.h"

#include <utility>

#include "simhost/scenario/CallDefaults.h"
#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/UsualCalls.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

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
Json StepsOf(const Json& story, const char* key, Json usual, const Place& place) {
    Origins& origins = place.Context().origins;
    if (!story.contains(key)) {
        origins.SetDefault(place.Pointer());
        return usual;
    }
    const Json& written = story.at(key);
    if (written == "none") {
        return Json::array();
    }
    if (written.is_object()) {
        const Place first = place.Element(0);
        const Place aside = place.Aside(place);
        origins.SetDefault(place.Pointer());
        for (const auto& [name, value] : written.items()) {
            usual.front()[name] = value;
            origins.SetCopy(first.Member(name).Pointer(), aside.Member(name).Pointer());
        }
        return usual;
    }
    if (!written.is_array()) {
        place.GiveUp("must be \"none\", an array of steps or an object");
        return Json::array();
    }
    return written;
}

// A text in an answer may be written as the JSON value that it stands for.
void WriteAnswerTexts(Json& answers) {
    for (Json& list : answers) {
        for (Json& answer : list) {
            if (answer.is_object() && answer.contains("text") && answer["text"].is_structured()) {
                answer["text"] = answer["text"].dump();
            }
        }
    }
}

void CheckAndWriteAnswers(Json& holder, const char* key, Library library, const Place& place) {
    if (holder.contains(key)) {
        CheckAnswers(holder[key], library, place.Member(key));
        WriteAnswerTexts(holder[key]);
    }
}

class CallWriter {
  public:
    // `menus` is what the PluginCore answers the first GetMenus: the plug-in passes it on to CreateMenusFromJSONBuffer.
    CallWriter(std::string menus, Values& values) : mMenus(std::move(menus)), mValues(values) {}

    void WriteSteps(Json& steps, const Place& place) const {
        for (std::size_t i = 0; i < steps.size(); ++i) {
            WriteStep(steps[i], place.Element(i));
        }
    }

  private:
    struct KindRow {
        const char* key;
        Library library;
    };

    void WriteStep(Json& step, const Place& place) const {
        if (!step.is_object()) {
            return;  // the reader will complain
        }
        for (const KindRow& kind :
             {KindRow{"calls", Library::kPluginCore}, KindRow{"bus_calls", Library::kMessaging}}) {
            if (step.contains(kind.key) && step[kind.key].is_array()) {
                step[kind.key] = Written(step[kind.key], kind.library, place.Member(kind.key));
            }
        }
        if (step.contains("do") && step["do"] == "answers") {
            CheckAndWriteAnswers(step, "set", Library::kPluginCore, place);
        }
    }

    Json Written(const Json& calls, Library library, const Place& place) const {
        Json written = Json::array();
        for (std::size_t i = 0; i < calls.size(); ++i) {
            if (calls[i].is_object() && calls[i].contains("usual")) {
                const Json list = UsualList(calls[i], place.Element(i));
                written.insert(written.end(), list.begin(), list.end());
            } else {
                CheckCall(calls[i], library, place.Element(i));
                written.push_back(FullCall(WithMenus(calls[i])));
            }
        }
        return written;
    }

    // {"usual": name}, and for a start-up "items": what the PluginCore asks the plug-in to add to the menu.
    Json UsualList(const Json& call, const Place& place) const {
        ObjectReader reader(call, place, keys::kUsual);
        const std::string name = reader.NeedText("usual");
        const Json* const items = reader.Find("items");
        reader.Finish();
        CheckKnown(name, "list of usual calls", NamesOfUsualLists(), reader.PlaceOf("usual"));
        Json list = Expanded(name);
        if (items == nullptr) {
            return list;
        }
        TextsOf(*items, reader.PlaceOf("items"));
        for (Json& each : list) {
            if (each.contains(kCreation)) {
                each[kCreation]["items"] = *items;
                return list;
            }
        }
        reader.PlaceOf("items").ComplainOfKey("the usual calls \"" + name + "\" create no menus, so have no \"items\"");
        return list;
    }

    // What is not a list is empty; somebody has complained by then.
    Json Expanded(const std::string& name) const {
        Json list = Json::array();
        for (const Json& call : UsualLists().value(name, Json::array())) {
            if (call.is_object() && call.contains("usual")) {
                const Json inner = Expanded(call["usual"].get<std::string>());
                list.insert(list.end(), inner.begin(), inner.end());
            } else {
                list.push_back(FullCall(WithMenus(mValues.FillIn(call))));
            }
        }
        return list;
    }

    Json WithMenus(const Json& call) const {
        Json written = call.is_string() && call == kCreation ? Json{{kCreation, Json::object()}} : call;
        if (written.is_object() && written.contains(kCreation) && written[kCreation].is_object() &&
            !written[kCreation].contains("json")) {
            written[kCreation]["json"] = mMenus;
        }
        return written;
    }

    static constexpr const char* kCreation = "CreateMenusFromJSONBuffer";

    std::string mMenus;
    Values& mValues;
};

std::string FirstMenus(const Json& story) {
    const Json::json_pointer first("/answers/GetMenus/0/text");
    return story.contains(first) && story.at(first).is_string() ? story.at(first).get<std::string>() : "";
}

}  // namespace

void WriteDefaults(Json& story, Values& values, const Place& place) {
    CheckAndWriteAnswers(story, "answers", Library::kPluginCore, place);
    CheckAndWriteAnswers(story, "bus_answers", Library::kMessaging, place);
    story["begin"] = StepsOf(story, "begin", DefaultBegin(), place.Member("begin"));
    story["end"] = StepsOf(story, "end", DefaultEnd(), place.Member("end"));
    const CallWriter calls(FirstMenus(story), values);
    for (const char* const key : {"begin", "steps", "end"}) {
        if (story.contains(key) && story[key].is_array()) {
            calls.WriteSteps(story[key], place.Member(key));
        }
    }
}

}  // namespace simhost
