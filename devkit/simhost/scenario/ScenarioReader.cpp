#include "simhost/scenario/ScenarioReader.h"

#include <algorithm>

#include "doubles/host/Rules.h"
#include "simhost/scenario/HostReader.h"
#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/StepReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

LaunchInfo ReadLaunchInfo(ObjectReader& reader) {
    LaunchInfo info;
    if (const Json* const value = reader.Find("launch_info")) {
        ObjectReader member(*value, reader.PlaceOf("launch_info"), keys::kLaunchInfo);
        info.local = member.OptionalText("local");
        info.common = member.OptionalText("common");
        member.Finish();
    }
    return info;
}

Expectations ReadExpectations(const Json& value, const std::string& place) {
    ObjectReader reader(value, place, keys::kExpect);
    Expectations expect;
    expect.library = reader.OptionalText("library");
    expect.messagingLibrary = reader.OptionalText("messaging_library");
    if (const Json* const violations = reader.Find("violations")) {
        for (const auto& [rule, amount] : violations->items()) {
            if (FindRule(rule) == nullptr) {
                throw ScenarioError(reader.PlaceOf("violations"), "there is no rule \"" + rule + "\"");
            }
            const std::string member = reader.PlaceOf("violations." + rule);
            if (amount.is_array()) {
                expect.violationTexts[rule] = TextsOf(amount, member);
            } else {
                expect.violations[rule] = NumberOf(amount, member);
            }
        }
    }
    reader.Finish();
    return expect;
}

void AddSteps(ObjectReader& reader, const char* key, std::vector<Step>& steps) {
    for (Step& step : ReadSteps(reader.Need(key), reader.PlaceOf(key))) {
        steps.push_back(std::move(step));
    }
}

Json ObjectOrEmpty(ObjectReader& reader, const char* key) {
    const Json* const value = reader.Find(key);
    return value == nullptr ? Json::object() : *value;
}

}  // namespace

Scenario ReadScenario(const Json& story, const std::string& place, const std::string& workFolder) {
    static const Json sNothing = Json::object();
    static const Json sUsualCopies = Json::array({"PluginCoreX64.dll"});
    ObjectReader reader(story, place, keys::kStory);
    Scenario scenario;
    scenario.title = reader.NeedText("title");
    reader.OptionalText("plugin");  // needed before the story is read: see ScenarioFile::PluginOf
    if (const Json* const limit = reader.Find("time_limit")) {
        scenario.timeLimitSeconds = NumberOf(*limit, reader.PlaceOf("time_limit"));
    }
    scenario.files = ReadFiles(reader.Array("files"), reader.PlaceOf("files"));
    scenario.copies =
        ReadCopies(reader.Find("copies") == nullptr ? sUsualCopies : reader.Array("copies"), reader.PlaceOf("copies"));
    scenario.launchInfo = ReadLaunchInfo(reader);
    scenario.processes = TextsOf(reader.Array("processes"), reader.PlaceOf("processes"));
    scenario.answers = ObjectOrEmpty(reader, "answers");
    scenario.busAnswers = ObjectOrEmpty(reader, "bus_answers");
    const Json* const host = reader.Find("host");
    ReadHost(host == nullptr ? sNothing : *host, reader.PlaceOf("host"), workFolder, scenario);
    for (const char* const key : {"begin", "steps", "end"}) {
        AddSteps(reader, key, scenario.steps);
    }
    if (const Json* const expect = reader.Find("expect")) {
        scenario.expect = ReadExpectations(*expect, reader.PlaceOf("expect"));
    }
    reader.Finish();
    return scenario;
}

}  // namespace simhost
