#include "simhost/scenario/StepAction.h"

#include <algorithm>
#include <iterator>

#include "simhost/scenario/ExpectedState.h"
#include "simhost/scenario/StepReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

void ReadNothing(ObjectReader&, Step&) {}

void ReadDocument(ObjectReader& reader, Step& step) { step.document = reader.NeedText("document"); }

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

void ReadEdit(ObjectReader& reader, Step& step) {
    ReadDocument(reader, step);
    ReadChange(reader, step.change);
}

void ReadSave(ObjectReader& reader, Step& step) {
    ReadDocument(reader, step);
    step.fileWritten = reader.Flag("file_written", true);
}

void ReadSaveAs(ObjectReader& reader, Step& step) {
    ReadSave(reader, step);
    ReadChange(reader, step.change);
}

void ReadClose(ObjectReader& reader, Step& step) {
    ReadDocument(reader, step);
    step.documentGone = reader.Flag("document_gone", true);
}

void ReadNotify(ObjectReader& reader, Step& step) {
    step.notifierType = reader.NeedText("type");
    step.document = reader.Text("document", "");
}

void ReadMessage(ObjectReader& reader, Step& step) {
    step.caller = reader.NeedText("caller");
    step.selector = reader.NeedText("selector");
    step.withBasicSuite = reader.Flag("basic_suite", true);
}

void ReadMenuTarget(ObjectReader& reader, Step& step) {
    if (!reader.Need("item").is_null()) {
        step.menu = {reader.NeedText("item"), reader.Number("nth", 1)};
    }
}

void ReadTicks(ObjectReader& reader, Step& step) {
    step.ticks.times = reader.Number("times", 1);
    step.ticks.sent = reader.Number("sent", step.ticks.times);
}

void ReadCheckedFile(ObjectReader& reader, Step& step) {
    if (!reader.Need("path").is_null()) {
        step.path = reader.NeedText("path");
    }
}

void ReadWrittenFiles(ObjectReader& reader, Step& step) {
    step.files = ReadFiles(reader.Array("files"), reader.PlaceOf("files"));
}

void ReadAnswers(ObjectReader& reader, Step& step) { step.answers = reader.Need("set"); }

void ReadMove(ObjectReader& reader, Step& step) { step.move = {reader.NeedText("from"), reader.NeedText("to")}; }

void ReadWait(ObjectReader& reader, Step& step) {
    step.seconds = NumberOf(reader.Need("seconds"), reader.PlaceOf("seconds"));
}

void ReadCheck(ObjectReader& reader, Step& step) { step.state = ReadExpectedState(reader); }

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

constexpr StepAction kActions[] = {
    {"startup", &ReadNothing},
    {"about", &ReadNothing},
    {"shutdown", &ReadNothing},
    {"unload", &ReadNothing},
    {"application_started", &ReadNothing},
    {"application_shutdown", &ReadNothing},
    {"font_list_changed", &ReadNothing},
    {"menu_changed", &ReadNothing},
    {"open", &ReadDocument},
    {"new", &ReadDocument},
    {"change", &ReadEdit},
    {"about_to_close", &ReadDocument},
    {"close", &ReadClose},
    {"save", &ReadSave},
    {"save_as", &ReadSaveAs},
    {"notify", &ReadNotify},
    {"message", &ReadMessage},
    {"menu_update", &ReadMenuTarget},
    {"menu_go", &ReadMenuTarget},
    {"tick", &ReadTicks},
    {"check_file", &ReadCheckedFile},
    {"panel_request", &ReadNothing},
    {"panel_open", &ReadNothing, false},
    {"edit", &ReadEdit, false},
    {"switch_to", &ReadDocument, false},
    {"write", &ReadWrittenFiles, false},
    {"answers", &ReadAnswers, false},
    {"move", &ReadMove, false},
    {"wait", &ReadWait, false},
    {"check", &ReadCheck, false},
    {"dialog", &ReadDialog, false},
};

}  // namespace

const StepAction& FindAction(const std::string& name, const std::string& place) {
    const auto* const row =
        std::find_if(std::begin(kActions), std::end(kActions), [&](const auto& action) { return action.name == name; });
    if (row == std::end(kActions)) {
        throw ScenarioError(place, "nobody knows how to do \"" + name + "\"");
    }
    return *row;
}

}  // namespace simhost
