#include "simhost/verbs/DialogVerb.h"

#include "simhost/run/Performance.h"

namespace simhost {

namespace {

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

}  // namespace

ShowDialog ReadShowDialog(ObjectReader& reader) {
    return {{reader.NeedText("title"), ReadDialogKind(reader.Text("class", "standard"), reader.PlaceOf("class")),
             reader.Flag("ok_button", true), reader.Text("created_before", "")},
            ReadDialogEnd(reader.NeedText("expect"), reader.PlaceOf("expect"))};
}

void Perform(const ShowDialog& action, Performance& performance) {
    const DialogRecord record = ShowHostDialog(action.dialog);
    const std::string dialog = "dialog \"" + action.dialog.title + "\"";
    performance.Tell(dialog + ": " + Describe(record));
    const DialogRecord expected = RecordFor(action.end);
    if (record.received != expected.received || record.endedWithOk != expected.endedWithOk) {
        performance.Broken(Rule::kDialog,
                           "the " + dialog + " was " + Describe(record) + ", expected " + Describe(expected));
    }
}

}  // namespace simhost
