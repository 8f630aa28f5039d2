#include "simhost/watch/OpenDialogs.h"

#include <string_view>

#include "doubles/common/Text.h"
#include "simhost/by_hand/HostWindow.h"
#include "simhost/watch/WindowText.h"
#include "simhost/windows/MainWindow.h"

namespace simhost {

namespace {

// A thread that does not handle messages does not answer at all.
constexpr UINT kPatienceMilliseconds = 500;

struct Search {
    DWORD process;
    std::optional<OpenDialog> found;
};

bool HandlesMessages(HWND window) {
    DWORD_PTR ignored = 0;
    return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, kPatienceMilliseconds, &ignored) != 0;
}

BOOL CALLBACK AddLabel(HWND control, LPARAM text) {
    if (ClassOfWindow(control) == L"Static" && IsWindowVisible(control) != 0) {
        *reinterpret_cast<std::string*>(text) += TextOfWindow(control, kPatienceMilliseconds);
    }
    return TRUE;
}

BOOL CALLBACK OnWindow(HWND window, LPARAM argument) {
    Search& search = *reinterpret_cast<Search*>(argument);
    DWORD process = 0;
    const DWORD thread = GetWindowThreadProcessId(window, &process);
    const std::wstring className = ClassOfWindow(window);
    if (process != search.process || IsWindowVisible(window) == 0 || className == kMainWindowClass ||
        className == kHostWindowClass || !HandlesMessages(window)) {
        return TRUE;
    }
    search.found =
        OpenDialog{TextOfWindow(window, kPatienceMilliseconds), "", Utf8(std::wstring_view(className)), thread};
    EnumChildWindows(window, &AddLabel, reinterpret_cast<LPARAM>(&search.found->text));
    return FALSE;
}

}  // namespace

std::optional<OpenDialog> FindOpenDialog(DWORD process) {
    Search search{process, std::nullopt};
    EnumWindows(&OnWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::string InWords(const OpenDialog& dialog) {
    return "the dialog \"" + dialog.title + "\"" + (dialog.text.empty() ? "" : ", \"" + dialog.text + "\"") +
           " (class " + dialog.className + ")";
}

}  // namespace simhost
