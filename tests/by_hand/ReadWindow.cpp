// Prints what another program's window shows, as JSON: the texts, places and states of its controls, and where menus
// are open. read_window TITLE
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "doubles/common/Text.h"

namespace {

using Json = nlohmann::ordered_json;
using simhost::Utf8;

constexpr const wchar_t* kMenuClass = L"#32768";

Json PlaceOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return {
        {"x", place.left}, {"y", place.top}, {"width", place.right - place.left}, {"height", place.bottom - place.top}};
}

std::string ClassOf(HWND window) {
    wchar_t name[128] = L"";
    GetClassNameW(window, name, 128);
    return Utf8(std::wstring(name));
}

// Of another process, so asked for by a message.
std::string TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return Utf8(text);
}

Json LinesOf(HWND list) {
    Json lines = Json::array();
    for (LRESULT i = 0; i < SendMessageW(list, LB_GETCOUNT, 0, 0); ++i) {
        std::wstring text(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(i), 0)) + 1,
                          L'\0');
        text.resize(static_cast<std::size_t>(
            SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()))));
        lines.push_back(Utf8(text));
    }
    return lines;
}

BOOL CALLBACK AddControl(HWND window, LPARAM argument) {
    Json control = {{"class", ClassOf(window)},
                    {"text", TextOf(window)},
                    {"enabled", IsWindowEnabled(window) != 0},
                    {"place", PlaceOf(window)}};
    if (control["class"] == "ListBox") {
        control["lines"] = LinesOf(window);
        control["line_height"] = SendMessageW(window, LB_GETITEMHEIGHT, 0, 0);
    }
    reinterpret_cast<Json*>(argument)->push_back(std::move(control));
    return TRUE;
}

BOOL CALLBACK AddMenu(HWND window, LPARAM argument) {
    if (ClassOf(window) == Utf8(std::wstring(kMenuClass)) && IsWindowVisible(window) != 0) {
        reinterpret_cast<Json*>(argument)->push_back(PlaceOf(window));
    }
    return TRUE;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    const HWND window = count == 2 ? FindWindowW(nullptr, arguments[1]) : nullptr;
    if (window == nullptr) {
        std::fprintf(stderr, "read_window: there is no such window\n");
        return 1;
    }
    Json controls = Json::array();
    Json menus = Json::array();
    EnumChildWindows(window, &AddControl, reinterpret_cast<LPARAM>(&controls));
    EnumWindows(&AddMenu, reinterpret_cast<LPARAM>(&menus));
    const Json shown = {{"enabled", IsWindowEnabled(window) != 0},
                        {"place", PlaceOf(window)},
                        {"controls", controls},
                        {"menus", menus}};
    _setmode(_fileno(stdout), _O_BINARY);
    std::printf("%s\n", shown.dump(2).c_str());
    return 0;
}
