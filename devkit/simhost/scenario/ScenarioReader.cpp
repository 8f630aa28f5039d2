#include "simhost/scenario/ScenarioReader.h"

#include <algorithm>
#include <utility>

#include "doubles/host/Rules.h"
#include "simhost/scenario/HostReader.h"
#include "simhost/scenario/MenuTexts.h"
#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/PathsOfRun.h"
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

std::vector<std::string> RuleNames() {
    std::vector<std::string> names;
    for (const RuleName& rule : AllRules()) {
        names.emplace_back(rule.name);
    }
    return names;
}

Expectations ReadExpectations(const Json& value, const Place& place) {
    ObjectReader reader(value, place, keys::kExpect);
    Expectations expect;
    expect.library = reader.OptionalText("library");
    expect.messagingLibrary = reader.OptionalText("messaging_library");
    for (const auto& [rule, amount] : reader.Object("violations").items()) {
        const Place member = reader.PlaceOf("violations").Member(rule);
        CheckKnown(rule, "rule", RuleNames(), member);
        if (amount.is_array()) {
            expect.violationTexts[rule] = TextsOf(amount, member);
        } else {
            expect.violations[rule] = NumberOf(amount, member, ranges::kCount);
        }
    }
    reader.Finish();
    return expect;
}

void AddSteps(ObjectReader& reader, const char* key, std::vector<Step>& steps) {
    if (const Json* const value = reader.Need(key)) {
        for (Step& step : ReadSteps(*value, reader.PlaceOf(key))) {
            steps.push_back(std::move(step));
        }
    }
}

// Names that steps use. An item that is named although it cannot be in the menu is no slip when the scenario says that
// it is not reached, and nobody knows what another plug-in than the shipped one adds to the menu.
void LearnMenuItems(const Json& story, const Expectations& expect, KnownNames& known) {
    const std::string notReached = NameOf(Rule::kNotReached);
    if (!story.contains("plugin") && !expect.violations.contains(notReached) &&
        !expect.violationTexts.contains(notReached)) {
        known.menuItems = MenuTextsOf(story);
    }
}

// Programs are started before the first step, so nothing else can have made them.
void ReadProcesses(ObjectReader& reader, const std::string& workFolder, Scenario& scenario) {
    const Json* const processes = reader.Find("processes");
    if (processes == nullptr) {
        return;
    }
    scenario.processes = TextsOf(*processes, reader.PlaceOf("processes"));
    for (std::size_t i = 0; i < scenario.processes.size(); ++i) {
        const std::string& program = scenario.processes[i];
        const Place place = reader.PlaceOf("processes").Element(i);
        CheckPathInRun(program, place);
        const auto isIt = [&](const std::string& path) { return IsSameInRun(path, program, workFolder); };
        const bool isLaidOut = std::any_of(scenario.copies.begin(), scenario.copies.end(),
                                           [&](const CopyToMake& copy) { return isIt(copy.to); }) ||
                               std::any_of(scenario.files.begin(), scenario.files.end(),
                                           [&](const FileToMake& file) { return isIt(file.path); });
        if (!isLaidOut && WhyNotInRun(program, workFolder).empty()) {
            place.Complain("nothing lays out \"" + program + "\"; \"copies\" does");
        }
    }
}

}  // namespace

Scenario ReadScenario(const Json& story, const Place& place, const std::string& workFolder) {
    static const Json sNothing = Json::object();
    ObjectReader reader(story, place, keys::kStory);
    Scenario scenario;
    scenario.title = reader.NeedText("title");
    reader.OptionalText("plugin");  // needed before the story is read: see ScenarioFile::PluginOf
    scenario.timeLimitSeconds = reader.OptionalNumber("time_limit", ranges::kTimeLimit);
    scenario.stepTimeLimitSeconds = reader.OptionalNumber("step_time_limit", ranges::kTimeLimit);
    scenario.files = ReadFiles(reader, Sources::kAreThere);
    scenario.copies = reader.Find("copies") == nullptr ? UsualCopies() : ReadCopies(reader);
    scenario.launchInfo = ReadLaunchInfo(reader);
    ReadProcesses(reader, workFolder, scenario);
    scenario.answers = reader.Object("answers");
    scenario.busAnswers = reader.Object("bus_answers");
    const Json* const host = reader.Find("host");
    ReadHost(host == nullptr ? sNothing : *host, reader.PlaceOf("host"), workFolder, scenario);
    if (const Json* const expect = reader.Find("expect")) {
        scenario.expect = ReadExpectations(*expect, reader.PlaceOf("expect"));
    }
    LearnMenuItems(story, scenario.expect, place.Context().known);
    for (const char* const key : {"begin", "steps", "end"}) {
        AddSteps(reader, key, scenario.steps);
    }
    if (scenario.steps.empty() && story.contains("steps")) {
        reader.PlaceOf("steps").Complain("there is no step, and nothing would be played");
    }
    reader.Finish();
    return scenario;
}

}  // namespace simhost
