// Dialogs that the host itself shows between messages, to be dismissed by the plug-in or left alone.
#pragma once

#include <windows.h>

#include <optional>
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
    HWND owner = nullptr;         // disabled meanwhile; may be null
};

// What reached a dialog from outside, in order, for example {"BM_CLICK to OK", "WM_SHOWWINDOW 0"}, and how it ended.
struct DialogRecord {
    std::vector<std::string> received;
    bool endedWithOk = false;
    bool closed = false;  // by its title bar or Escape
};

// Shows the dialog and handles its messages until it ends with OK or nothing has happened for a moment.
DialogRecord ShowHostDialog(const DialogToShow& dialog);

// Whether ShowHostDialog shows this window now. Thread: any.
bool IsHostDialog(HWND window);

// What ShowHostDialog gives for a dialog that ended so.
DialogRecord RecordFor(DialogEnd end);

// The end that a scenario can expect, as it is written there, for example "clicked OK"; none when it went otherwise.
std::optional<std::string> NameOfEnd(const DialogRecord& record);
// That name, or else what reached the dialog.
std::string Describe(const DialogRecord& record);

}  // namespace simhost
