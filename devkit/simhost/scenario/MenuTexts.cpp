#include "simhost/scenario/MenuTexts.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

void AddLabels(const Json& description, std::set<std::string>& texts) {
    for (const char* const key : {"label", "title"}) {
        if (description.is_object() && description.contains(key) && description[key].is_string()) {
            texts.insert(description[key].get<std::string>());
        }
    }
    if (description.is_structured()) {
        for (const Json& member : description) {
            AddLabels(member, texts);
        }
    }
}

// False when one of the answers is not known to be a menu.
bool AddAnswers(const Json& answers, std::set<std::string>& texts) {
    if (!answers.is_object() || !answers.contains("GetMenus")) {
        return false;
    }
    for (const Json& answer : answers["GetMenus"]) {
        const Json text = answer.is_object() ? answer.value("text", Json()) : Json();
        const Json menus = text.is_string() ? Json::parse(text.get<std::string>(), nullptr, false) : Json();
        if (!menus.is_structured()) {
            return false;
        }
        AddLabels(menus, texts);
    }
    return true;
}

bool AddAnswersOfSteps(const Json& steps, std::set<std::string>& texts) {
    for (const Json& step : steps) {
        const bool replaces = step.is_object() && step.value("do", Json()) == "answers";
        if (replaces && !AddAnswers(step.value("set", Json()), texts)) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::optional<std::set<std::string>> MenuTextsOf(const Json& story) {
    std::set<std::string> texts;
    if (!AddAnswers(story.value("answers", Json()), texts)) {
        return std::nullopt;
    }
    for (const char* const key : {"begin", "steps", "end"}) {
        if (story.contains(key) && !AddAnswersOfSteps(story[key], texts)) {
            return std::nullopt;
        }
    }
    const Json::json_pointer host("/host/menu");
    if (story.contains(host) && story.at(host).is_array()) {
        for (const Json& item : story.at(host)) {
            if (item.is_object() && item.contains("text") && item["text"].is_string()) {
                texts.insert(item["text"].get<std::string>());
            }
        }
    }
    return texts;
}

}  // namespace simhost
