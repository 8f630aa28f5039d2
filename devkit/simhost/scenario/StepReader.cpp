#include "simhost/scenario/StepReader.h"

#include "simhost/scenario/ObjectReader.h"
#include "simhost/verbs/VerbTable.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::vector<BoxToExpect> ReadBoxes(const Json& array, const std::string& place) {
    std::vector<BoxToExpect> boxes;
    for (const Json& value : array) {
        ObjectReader reader(value, place, keys::kBox);
        boxes.push_back({reader.NeedText("caption"), reader.NeedText("text"),
                         static_cast<std::uint32_t>(reader.Number("style", 0))});
        reader.Finish();
    }
    return boxes;
}

// A text stands for the event as the plug-in always sends it, with that text for its data.
std::vector<PanelEvent> ReadPanelEvents(const Json& array, const std::string& place) {
    std::vector<PanelEvent> events;
    for (const Json& value : array) {
        if (value.is_string()) {
            events.push_back({"com.quorvel.portnumberresponse", 1, "test", std::nullopt, value.get<std::string>()});
            continue;
        }
        ObjectReader reader(value, place, keys::kPanelEvent);
        events.push_back({reader.OptionalText("type"), static_cast<std::int32_t>(reader.Number("scope", 0)),
                          reader.OptionalText("application"), reader.OptionalText("extension"),
                          reader.OptionalText("data")});
        reader.Finish();
    }
    return events;
}

std::vector<FailureToScript> ReadFailures(const Json& array, const std::string& place) {
    std::vector<FailureToScript> failures;
    for (const Json& value : array) {
        ObjectReader reader(value, place, keys::kFailure);
        failures.push_back({reader.NeedText("operation"), reader.Number("nth", 1),
                            static_cast<std::int32_t>(reader.NeedNumber("code"))});
        reader.Finish();
    }
    return failures;
}

Step ReadStep(const Json& value, const std::string& place, bool nested);

std::vector<NestedStep> ReadNested(const Json& array, const std::string& place) {
    std::vector<NestedStep> nested;
    for (const Json& value : array) {
        ObjectReader reader(value, place, keys::kNested);
        nested.push_back({reader.NeedText("during"),
                          reader.Number("nth", 1),
                          {ReadStep(reader.Need("step"), reader.PlaceOf("step"), true)}});
        reader.Finish();
    }
    return nested;
}

std::map<std::string, std::int64_t> ReadCounts(ObjectReader& reader, const char* key) {
    std::map<std::string, std::int64_t> counts;
    if (const Json* const written = reader.Find(key)) {
        for (const auto& [operation, count] : written->items()) {
            counts[operation] = NumberOf(count, reader.PlaceOf(key) + "." + operation);
        }
    }
    return counts;
}

StepExpectations ReadExpectations(ObjectReader& reader) {
    StepExpectations expect;
    if (!reader.Need("calls").is_array()) {
        throw ScenarioError(reader.PlaceOf("calls"), "must be an array");
    }
    expect.calls = reader.Need("calls");
    expect.busCalls = reader.Array("bus_calls");
    expect.panelEvents = ReadPanelEvents(reader.Array("panel_events"), reader.PlaceOf("panel_events"));
    if (reader.Find("loads") != nullptr) {
        expect.loads = TextsOf(reader.Array("loads"), reader.PlaceOf("loads"));
    }
    expect.boxes = ReadBoxes(reader.Array("boxes"), reader.PlaceOf("boxes"));
    expect.hostCalls = ReadCounts(reader, "host_calls");
    if (const Json* const switches = reader.Find("foreground_switches")) {
        expect.foregroundSwitches = NumberOf(*switches, reader.PlaceOf("foreground_switches"));
    }
    return expect;
}

Step ReadStep(const Json& value, const std::string& place, bool nested) {
    if (!value.is_object() || !value.contains("do")) {
        throw ScenarioError(place, "must be an object with \"do\"");
    }
    const Verb& verb = FindVerb(TextOf(value["do"], place + ".do"), place);
    ObjectReader reader(value, place, KeysOf(verb, nested));
    reader.Need("do");
    Step step;
    step.place = place;
    step.say = reader.Text("say", "");
    step.verb = &verb;
    step.action = verb.read(reader);
    if (verb.reachesPlugin) {
        // The calls of a nested message are those of the step around it.
        if (!nested) {
            step.expect = ReadExpectations(reader);
            step.failures = ReadFailures(reader.Array("fail"), reader.PlaceOf("fail"));
            step.nested = ReadNested(reader.Array("nested"), reader.PlaceOf("nested"));
        }
        step.expect.answer = static_cast<std::int32_t>(reader.Number("answer", 0));
    }
    reader.Finish();
    return step;
}

}  // namespace

std::vector<Step> ReadSteps(const Json& value, const std::string& place) {
    if (!value.is_array()) {
        throw ScenarioError(place, "must be an array");
    }
    std::vector<Step> steps;
    for (const Json& step : value) {
        steps.push_back(ReadStep(step, place + "[" + std::to_string(steps.size()) + "]", false));
    }
    return steps;
}

}  // namespace simhost
