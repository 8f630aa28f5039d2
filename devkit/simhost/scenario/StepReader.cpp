#include "simhost/scenario/StepReader.h"

#include <cstdio>
#include <ctime>

#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/StepAction.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::int64_t ReadTime(const std::string& text, const std::string& place) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    if (std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%dZ", &year, &month, &day, &hour, &minute, &second) != 6) {
        throw ScenarioError(place, "must be a time like 2024-05-01T12:00:00Z");
    }
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    return static_cast<std::int64_t>(_mkgmtime64(&parts));
}

std::vector<BoxToExpect> ReadBoxes(const Json& array, const std::string& place) {
    std::vector<BoxToExpect> boxes;
    for (const Json& value : array) {
        ObjectReader reader(value, place);
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
        ObjectReader reader(value, place);
        events.push_back({reader.OptionalText("type"), static_cast<std::int32_t>(reader.Number("scope", 0)),
                          reader.OptionalText("application"), reader.OptionalText("extension"),
                          reader.OptionalText("data")});
        reader.Finish();
    }
    return events;
}

void ReadMessagingExpectations(ObjectReader& reader, Step& step) {
    step.busCalls = reader.Array("bus_calls");
    step.panelEvents = ReadPanelEvents(reader.Array("panel_events"), reader.PlaceOf("panel_events"));
    if (reader.Find("loads") != nullptr) {
        step.loads.emplace();
        for (const Json& file : reader.Array("loads")) {
            step.loads->push_back(TextOf(file, reader.PlaceOf("loads")));
        }
    }
}

std::vector<FailureToScript> ReadFailures(const Json& array, const std::string& place) {
    std::vector<FailureToScript> failures;
    for (const Json& value : array) {
        ObjectReader reader(value, place);
        failures.push_back({reader.NeedText("operation"), reader.Number("nth", 1),
                            static_cast<std::int32_t>(NumberOf(reader.Need("code"), place + ".code"))});
        reader.Finish();
    }
    return failures;
}

Step ReadStep(const Json& value, const std::string& place, bool nested);

std::vector<NestedStep> ReadNested(const Json& array, const std::string& place) {
    std::vector<NestedStep> nested;
    for (const Json& value : array) {
        ObjectReader reader(value, place);
        nested.push_back({reader.NeedText("during"),
                          reader.Number("nth", 1),
                          {ReadStep(reader.Need("step"), reader.PlaceOf("step"), true)}});
        reader.Finish();
    }
    return nested;
}

// What only steps have that send a message. The calls of a nested message are those of the step around it.
void ReadMessageExpectations(ObjectReader& reader, Step& step, bool nested) {
    step.answer = static_cast<std::int32_t>(reader.Number("answer", 0));
    if (nested) {
        return;
    }
    if (!reader.Need("calls").is_array()) {
        throw ScenarioError(reader.PlaceOf("calls"), "must be an array");
    }
    step.calls = reader.Need("calls");
    ReadMessagingExpectations(reader, step);
    step.boxes = ReadBoxes(reader.Array("boxes"), reader.PlaceOf("boxes"));
    step.failures = ReadFailures(reader.Array("fail"), reader.PlaceOf("fail"));
    step.nested = ReadNested(reader.Array("nested"), reader.PlaceOf("nested"));
    if (const Json* const counts = reader.Find("host_calls")) {
        for (const auto& [operation, count] : counts->items()) {
            step.hostCalls[operation] = NumberOf(count, reader.PlaceOf("host_calls." + operation));
        }
    }
    if (reader.Find("foreground_switches") != nullptr) {
        step.foregroundSwitches = reader.Number("foreground_switches", 0);
    }
}

Step ReadStep(const Json& value, const std::string& place, bool nested) {
    ObjectReader reader(value, place);
    Step step;
    step.place = place;
    step.action = reader.NeedText("do");
    step.say = reader.Text("say", "");
    const StepAction& action = FindAction(step.action, place);
    action.readDetails(reader, step);
    if (action.sendsMessage) {
        ReadMessageExpectations(reader, step, nested);
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

std::vector<FileToMake> ReadFiles(const Json& array, const std::string& place) {
    std::vector<FileToMake> files;
    for (const Json& value : array) {
        ObjectReader reader(value, place);
        FileToMake file{reader.NeedText("path"), reader.Text("text", ""), std::nullopt};
        if (const auto time = reader.OptionalText("modified")) {
            file.modified = ReadTime(*time, reader.PlaceOf("modified"));
        }
        reader.Finish();
        files.push_back(std::move(file));
    }
    return files;
}

std::vector<TextFrame> ReadFrames(const Json& array, const std::string& place) {
    std::vector<TextFrame> frames;
    for (const Json& runs : array) {
        if (!runs.is_array()) {
            throw ScenarioError(place, "a frame is an array of PostScript names, one per run");
        }
        TextFrame frame;
        for (const Json& font : runs) {
            frame.runs.push_back({TextOf(font, place)});
        }
        frames.push_back(std::move(frame));
    }
    return frames;
}

}  // namespace simhost
