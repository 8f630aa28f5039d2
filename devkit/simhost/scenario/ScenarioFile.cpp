#include "simhost/scenario/ScenarioFile.h"

#include <fstream>

#include "doubles/common/Text.h"
#include "simhost/scenario/Defaults.h"
#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/ScenarioReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

Json ParseFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw ScenarioError(Utf8(file.wstring()), "cannot be read");
    }
    try {
        return Json::parse(stream);
    } catch (const Json::parse_error& error) {
        throw ScenarioError(Utf8(file.wstring()), error.what());
    }
}

void CheckKeys(const Json& value, const std::string& place, const ObjectKind& kind) {
    const ObjectReader reader(value, place, kind);
}

std::vector<std::string> CasesOf(const Json& file, const std::string& place) {
    // Only that all keys are known; what they hold is read case by case.
    CheckKeys(file, place, keys::kScenario);
    if (!file.contains("cases")) {
        return {""};
    }
    if (!file["cases"].is_object() || file["cases"].empty()) {
        throw ScenarioError(place + ".cases", "must be an object that names cases");
    }
    std::vector<std::string> names;
    for (const auto& [name, members] : file["cases"].items()) {
        CheckKeys(members, place + ".cases." + name, keys::kCase);
        names.push_back(name);
    }
    return names;
}

}  // namespace

ScenarioFile::ScenarioFile(std::filesystem::path file)
    : mPath(std::move(file)), mJson(ParseFile(mPath)), mCases(CasesOf(mJson, PlaceOf(""))) {}

std::string ScenarioFile::PlaceOf(const std::string& caseName) const {
    return Utf8(mPath.filename().wstring()) + (caseName.empty() ? "" : "/" + caseName);
}

// What a case says replaces what the file says, but values are merged by name.
Json ScenarioFile::StoryOf(const std::string& caseName) const {
    Json story = mJson;
    story.erase("$schema");
    story.erase("cases");
    if (caseName.empty()) {
        return story;
    }
    if (!mJson.contains("cases") || !mJson["cases"].contains(caseName)) {
        throw ScenarioError(PlaceOf(""), "there is no case \"" + caseName + "\"");
    }
    for (const auto& [key, member] : mJson["cases"][caseName].items()) {
        if (key == "values" && story.contains(key) && story[key].is_object() && member.is_object()) {
            story[key].update(member);
        } else {
            story[key] = member;
        }
    }
    return story;
}

std::string ScenarioFile::PluginOf(const std::string& caseName) const {
    const Json story = StoryOf(caseName);
    return story.contains("plugin") ? TextOf(story["plugin"], PlaceOf(caseName) + ".plugin")
                                    : "QuorvelTypeAgentAI20.aip";
}

Json ScenarioFile::WrittenOut(const std::string& caseName, const Placeholders& placeholders) const {
    const std::string place = PlaceOf(caseName);
    Json story = StoryOf(caseName);
    const Json own = story.value("values", Json::object());
    story.erase("values");
    const Values values(placeholders, own, place + ".values");
    story = values.FillIn(story, place);
    WriteDefaults(story, place);
    // The usual calls name the plug-in's file.
    return values.FillIn(story, place);
}

Scenario ScenarioFile::Read(const std::string& caseName, const Placeholders& placeholders) const {
    return ReadScenario(WrittenOut(caseName, placeholders), PlaceOf(caseName), placeholders.at("work"));
}

}  // namespace simhost
