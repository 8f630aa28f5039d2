#include "dialogs/WindowUtilities.h"

#include <exception>
#include <string>

#include "support/Foreground.h"
#include "support/Log.h"

namespace {

// A search through windows: the text to find and the first window that holds it. An exception stops the search and
// waits here until Windows has returned.
struct WindowSearch {
    const char* text;
    HWND found = nullptr;
    std::exception_ptr failure = nullptr;
};

std::string WindowText(HWND window) {
    const int length = GetWindowTextLengthA(window);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    const int copied = GetWindowTextA(window, text.data(), length + 1);
    text.resize(static_cast<std::size_t>(copied));
    return text;
}

BOOL CALLBACK StopAtFirstMatch(HWND window, LPARAM parameter) noexcept {
    auto* const search = reinterpret_cast<WindowSearch*>(parameter);
    try {
        if (WindowText(window).find(search->text) != std::string::npos) {
            search->found = window;
        }
    } catch (...) {
        search->failure = std::current_exception();
    }
    return search->found == nullptr && search->failure == nullptr ? TRUE : FALSE;
}

HWND ResultOf(const WindowSearch& search) {
    if (search.failure != nullptr) {
        std::rethrow_exception(search.failure);
    }
    return search.found;
}

HWND FindTopLevelWindow(const char* text) {
    WindowSearch search{text};
    EnumWindows(StopAtFirstMatch, reinterpret_cast<LPARAM>(&search));
    return ResultOf(search);
}

HWND FindChildWindow(HWND parent, const char* text) {
    WindowSearch search{text};
    EnumChildWindows(parent, StopAtFirstMatch, reinterpret_cast<LPARAM>(&search));
    return ResultOf(search);
}

}  // namespace

void CrossPluginUtils::BackgroundForegroundApp() {
    LogMessage(kLogEntry, "Entering CrossPluginUtils::BackgroundForegroundApp");
    if (SwitchForegroundAwayAndBack(ForegroundMatch::kSameWindow)) {
        LogMessage(kLogNote, "Switched out of foreground window, and back into it.");
    }
    LogMessage(kLogExit, "Exiting CrossPluginUtils::BackgroundForegroundApp");
}

HWND FindWindowByText(const char* title, const char* text) {
    const HWND candidate = FindTopLevelWindow(title);
    if (candidate == nullptr || text == nullptr) {
        return candidate;
    }
    return FindChildWindow(candidate, text) != nullptr ? candidate : nullptr;
}

bool ForciblyCloseWindow(const char* title, const char* text) {
    const HWND window = FindWindowByText(title, text);
    if (window == nullptr) {
        return false;
    }
    LogMessage(kLogNote, "Forcibly closing HWND 0x%08x (title='%s', text='%s')", Low32(window), title,
               text == nullptr ? "(null)" : text);
    PostMessageW(window, WM_KEYDOWN, VK_RETURN, 0);
    PostMessageW(window, WM_KEYUP, VK_RETURN, 0);
    return true;
}
