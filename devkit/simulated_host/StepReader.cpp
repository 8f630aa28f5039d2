#include "simulated_host/StepReader.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <iterator>

#include "simulated_host/ObjectReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

enum class Needs { kNothing, kDocument, kOther };

struct ActionRow {
    const char* name;
    Needs needs;
};

constexpr ActionRow kActions[] = {
    {"startup", Needs::kNothing},
    {"about", Needs::kNothing},
    {"shutdown", Needs::kNothing},
    {"unload", Needs::kNothing},
    {"application_started", Needs::kNothing},
    {"application_shutdown", Needs::kNothing},
    {"font_list_changed", Needs::kNothing},
    {"menu_changed", Needs::kNothing},
    {"open", Needs::kDocument},
    {"new", Needs::kDocument},
    {"change", Needs::kDocument},
    {"about_to_close", Needs::kDocument},
    {"close", Needs::kDocument},
    {"save", Needs::kDocument},
    {"save_as", Needs::kDocument},
    {"switch_to", Needs::kDocument},
    {"edit", Needs::kDocument},
    {"notify", Needs::kOther},
    {"message", Needs::kOther},
    {"write", Needs::kOther},
    {"answers", Needs::kOther},
    {"dialog", Needs::kOther},
};

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

DialogKind ReadDialogKind(const std::string& name, const std::string& place) {
    if (name == "standard") {
        return DialogKind::kStandard;
    }
    if (name == "standard by name") {
        return DialogKind::kStandardByName;
    }
    if (name == "other") {
        return DialogKind::kOtherClass;
    }
    throw ScenarioError(place, "must be \"standard\", \"standard by name\" or \"other\"");
}

DialogEnd ReadDialogEnd(const std::string& name, const std::string& place) {
    if (name == "untouched") {
        return DialogEnd::kUntouched;
    }
    if (name == "clicked OK") {
        return DialogEnd::kClickedOk;
    }
    if (name == "pressed Enter") {
        return DialogEnd::kPressedEnter;
    }
    throw ScenarioError(place, "must be \"untouched\", \"clicked OK\" or \"pressed Enter\"");
}

void ReadDialog(ObjectReader& reader, Step& step) {
    step.dialog.title = reader.NeedText("title");
    step.dialog.kind = ReadDialogKind(reader.Text("class", "standard"), reader.PlaceOf("class"));
    step.dialog.okButton = reader.Flag("ok_button", true);
    step.dialog.createdBefore = reader.Text("created_before", "");
    step.dialog.end = ReadDialogEnd(reader.NeedText("expect"), reader.PlaceOf("expect"));
}

void ReadChange(ObjectReader& reader, DocumentChange& change) {
    change.path = reader.OptionalText("path");
    if (reader.Find("modified") != nullptr) {
        change.modified = reader.Flag("modified", false);
    }
    if (reader.Find("frames") != nullptr) {
        change.frames = ReadFrames(reader.Array("frames"), reader.PlaceOf("frames"));
    }
    if (reader.Find("placed") != nullptr) {
        change.placed.emplace();
        for (const Json& path : reader.Array("placed")) {
            change.placed->push_back(TextOf(path, reader.PlaceOf("placed")));
        }
    }
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

const ActionRow& FindAction(const std::string& name, const std::string& place) {
    const auto* const row =
        std::find_if(std::begin(kActions), std::end(kActions), [&](const ActionRow& r) { return r.name == name; });
    if (row == std::end(kActions)) {
        throw ScenarioError(place, "nobody knows how to do \"" + name + "\"");
    }
    return *row;
}

void ReadOther(ObjectReader& reader, Step& step) {
    if (step.action == "notify") {
        step.notifierType = reader.NeedText("type");
        step.document = reader.Text("document", "");
    } else if (step.action == "message") {
        step.caller = reader.NeedText("caller");
        step.selector = reader.NeedText("selector");
        step.withBasicSuite = reader.Flag("basic_suite", true);
    } else if (step.action == "write") {
        step.files = ReadFiles(reader.Array("files"), reader.PlaceOf("files"));
    } else if (step.action == "answers") {
        step.answers = reader.Need("set");
    } else if (step.action == "dialog") {
        ReadDialog(reader, step);
    }
}

Step ReadStep(const Json& value, const std::string& place, bool nested) {
    ObjectReader reader(value, place);
    Step step;
    step.place = place;
    step.action = reader.NeedText("do");
    step.say = reader.Text("say", "");
    const ActionRow& action = FindAction(step.action, place);
    if (action.needs == Needs::kDocument) {
        step.document = reader.NeedText("document");
    } else if (action.needs == Needs::kOther) {
        ReadOther(reader, step);
    }
    if (step.action == "edit" || step.action == "save_as" || step.action == "change") {
        ReadChange(reader, step.change);
    }
    if (step.action == "close") {
        step.documentGone = reader.Flag("document_gone", true);
    }
    if (step.action == "save" || step.action == "save_as") {
        step.fileWritten = reader.Flag("file_written", true);
    }
    if (SendsMessage(step)) {
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
