#include "simhost/scenario/StepReader.h"

#include <utility>

#include "doubles/host/OperationList.h"
#include "simhost/scenario/ObjectReader.h"
#include "simhost/verbs/VerbTable.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::string NeedKnown(ObjectReader& reader, const char* key, const char* kind, const std::vector<std::string>& known) {
    std::string name = reader.NeedText(key);
    if (!name.empty()) {
        CheckKnown(name, kind, known, reader.PlaceOf(key));
    }
    return name;
}

std::vector<BoxToExpect> ReadBoxes(ObjectReader& reader) {
    std::vector<BoxToExpect> boxes;
    reader.ForEach("boxes", keys::kBox, [&](ObjectReader& box) {
        boxes.push_back({box.NeedText("caption"), box.NeedText("text"),
                         static_cast<std::uint32_t>(box.Number("style", 0, ranges::kUint32))});
    });
    return boxes;
}

// A text stands for the event as the plug-in always sends it, with that text for its data.
std::vector<PanelEvent> ReadPanelEvents(ObjectReader& reader) {
    const Json& array = reader.Array("panel_events");
    std::vector<PanelEvent> events;
    for (std::size_t i = 0; i < array.size(); ++i) {
        if (array[i].is_string()) {
            events.push_back({"com.quorvel.portnumberresponse", 1, "test", std::nullopt, array[i].get<std::string>()});
            continue;
        }
        ObjectReader event(array[i], reader.PlaceOf("panel_events").Element(i), keys::kPanelEvent);
        events.push_back({event.OptionalText("type"), event.Int32("scope", 0), event.OptionalText("application"),
                          event.OptionalText("extension"), event.OptionalText("data")});
        event.Finish();
    }
    return events;
}

std::vector<FailureToScript> ReadFailures(ObjectReader& reader) {
    std::vector<FailureToScript> failures;
    reader.ForEach("fail", keys::kFailure, [&](ObjectReader& failure) {
        failures.push_back({NeedKnown(failure, "operation", "operation of the host", HostOperationNames()),
                            failure.Number("nth", 1, ranges::kNth), failure.NeedInt32("code")});
        if (failure.Find("code") != nullptr && *failure.Find("code") == 0) {
            failure.PlaceOf("code").Complain("must not be 0, for 0 is no failure");
        }
    });
    return failures;
}

Step ReadStep(const Json& value, const Place& place, bool nested);

std::vector<NestedStep> ReadNested(ObjectReader& reader) {
    std::vector<NestedStep> nested;
    reader.ForEach("nested", keys::kNested, [&](ObjectReader& each) {
        NestedStep step{NeedKnown(each, "during", "operation of the host, nor entry of the PluginCore,", MomentNames()),
                        each.Number("nth", 1, ranges::kNth),
                        {}};
        if (const Json* const value = each.Need("step")) {
            step.step.push_back(ReadStep(*value, each.PlaceOf("step"), true));
        }
        nested.push_back(std::move(step));
    });
    return nested;
}

std::map<std::string, std::int64_t> ReadHostCalls(ObjectReader& reader) {
    std::map<std::string, std::int64_t> counts;
    for (const auto& [operation, count] : reader.Object("host_calls").items()) {
        const Place place = reader.PlaceOf("host_calls").Member(operation);
        CheckKnown(operation, "operation of the host", HostOperationNames(), place);
        counts[operation] = NumberOf(count, place, ranges::kCount);
    }
    return counts;
}

// An array of calls, or "any". The calls themselves were checked when the defaults were written.
std::optional<Json> ReadCalls(const Json& value, const Place& place) {
    if (value == "any") {
        return std::nullopt;
    }
    if (!value.is_array()) {
        place.Complain("must be an array of calls or \"any\"");
        return Json::array();
    }
    return value;
}

StepExpectations ReadExpectations(ObjectReader& reader) {
    StepExpectations expect;
    if (const Json* const calls = reader.Need("calls")) {
        expect.calls = ReadCalls(*calls, reader.PlaceOf("calls"));
    }
    if (const Json* const calls = reader.Find("bus_calls")) {
        expect.busCalls = ReadCalls(*calls, reader.PlaceOf("bus_calls"));
    }
    expect.panelEvents = ReadPanelEvents(reader);
    if (const Json* const loads = reader.Find("loads")) {
        expect.loads = TextsOf(*loads, reader.PlaceOf("loads"));
    }
    expect.boxes = ReadBoxes(reader);
    expect.hostCalls = ReadHostCalls(reader);
    expect.foregroundSwitches = reader.OptionalNumber("foreground_switches", ranges::kCount);
    return expect;
}

// Complains and answers null for what is no step at all.
const Verb* ReadVerb(const Json& value, const Place& place) {
    if (!value.is_object() || !value.contains("do")) {
        place.Complain("must be an object with \"do\"");
        return nullptr;
    }
    const std::string name = TextOf(value["do"], place.Member("do"));
    const Verb* const verb = FindVerb(name);
    if (verb == nullptr && value["do"].is_string()) {
        CheckKnown(name, "verb", VerbNames(), place.Member("do"));
    }
    return verb;
}

// The verb and the first text that tells what it is about: "save Brochure".
std::string InShort(const Json& step) {
    std::string words = step["do"].get<std::string>();
    for (const char* const key : {"document", "item", "path", "selector", "title", "type"}) {
        if (step.contains(key) && step[key].is_string()) {
            return words + " " + step[key].get<std::string>();
        }
    }
    return words;
}

Step ReadStep(const Json& value, const Place& place, bool nested) {
    Step step;
    step.place = place.Text();
    step.line = place.Source().line;
    step.verb = ReadVerb(value, place);
    if (step.verb == nullptr) {
        return step;
    }
    const Verb& verb = *step.verb;
    if (nested && !verb.canBeNested) {
        place.Member("do").Complain("\"" + std::string(verb.name) + "\" cannot be nested in a message");
    }
    ObjectReader reader(value, place, KeysOf(verb, nested));
    reader.Need("do");
    step.say = reader.Text("say", "");
    step.inShort = InShort(value);
    step.action = verb.read(reader);
    if (verb.reachesPlugin) {
        // The calls of a nested message are those of the step around it.
        if (!nested) {
            step.expect = ReadExpectations(reader);
            step.failures = ReadFailures(reader);
            step.nested = ReadNested(reader);
        }
        step.expect.answer = reader.Int32("answer", 0);
    }
    reader.Finish();
    return step;
}

}  // namespace

std::vector<Step> ReadSteps(const Json& value, const Place& place) {
    std::vector<Step> steps;
    if (!value.is_array()) {
        place.Complain("must be an array");
        return steps;
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
        steps.push_back(ReadStep(value[i], place.Element(i), false));
    }
    return steps;
}

}  // namespace simhost
