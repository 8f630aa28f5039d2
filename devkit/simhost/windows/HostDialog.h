// Dialogs that the host itself shows between messages, to be dismissed by the plug-in or left alone.
#pragma once

#include <string>
#include <vector>

namespace simhost {

enum class DialogKind { kStandard, kStandardByName, kOtherClass };
enum class DialogEnd { kUntouched, kClickedOk, kPressedEnter };

struct DialogToShow {
    std::string title;
    DialogKind kind = DialogKind::kStandard;
    bool okButton = true;
    std::string createdBefore{};  // title of a dialog that was created before and is not shown yet; may be empty
    bool staysOpen = false;       // until somebody closes it; else for a moment only
};

// What reached a dialog from outside, in order, for example {"BM_CLICK to OK", "WM_SHOWWINDOW 0"}, and how it ended.
struct DialogRecord {
    std::vector<std::string> received;
    bool endedWithOk = false;
};

// Shows the dialog and handles its messages until it ends with OK or nothing has happened for a moment.
DialogRecord ShowHostDialog(const DialogToShow& dialog);

// What ShowHostDialog gives for a dialog that ended so.
DialogRecord RecordFor(DialogEnd end);

// In words, for example "clicked OK".
std::string Describe(const DialogRecord& record);

}  // namespace simhost
