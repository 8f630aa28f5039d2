#include "simhost/verbs/DialogVerb.h"

#include "simhost/run/Performance.h"

namespace simhost {

ShowDialog ReadShowDialog(ObjectReader& reader) {
    constexpr DialogKind kKinds[] = {DialogKind::kStandard, DialogKind::kStandardByName, DialogKind::kOtherClass};
    constexpr DialogEnd kEnds[] = {DialogEnd::kUntouched, DialogEnd::kClickedOk, DialogEnd::kPressedEnter};
    return {{reader.NeedText("title"), kKinds[reader.Choice("class", {"standard", "standard by name", "other"}, 0)],
             reader.Flag("ok_button", true), reader.Text("created_before", "")},
            kEnds[reader.NeedChoice("expect", {"untouched", "clicked OK", "pressed Enter"})]};
}

void Perform(const ShowDialog& action, Performance& performance) {
    const DialogRecord record = ShowHostDialog(action.dialog);
    const std::string dialog = "dialog \"" + action.dialog.title + "\"";
    performance.Tell(dialog + ": " + Describe(record));
    if (const auto end = NameOfEnd(record)) {
        performance.Observed("expect", *end);
    }
    const DialogRecord expected = RecordFor(action.end);
    if (record.received != expected.received || record.endedWithOk != expected.endedWithOk) {
        performance.Broken(Rule::kDialog,
                           "the " + dialog + " was " + Describe(record) + ", expected " + Describe(expected));
    }
}

}  // namespace simhost
