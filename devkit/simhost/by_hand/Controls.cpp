#include "simhost/by_hand/Controls.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace simhost {

namespace {

constexpr int kColumn = 340;
constexpr int kMargin = 10;
constexpr int kLine = 26;
constexpr int kFirstLabel = 200;
constexpr int kFirstButton = 300;

// A place in the left column: lines from the top, eighths of its width.
struct Place {
    int line, lines, from, to;
};

struct Label {
    const wchar_t* text;
    Place place;
};

constexpr Label kLabels[] = {
    {L"Documents", {0, 1, 0, 8}},
    {L"Fonts of the text: a, b in one frame; c in the next", {12, 1, 0, 8}},
    {L"The font manager's panel", {16, 1, 0, 8}},
};

// When the selected document is so.
enum class Use { kAlways, kOnClosed, kOnCurrent };

struct Button {
    const wchar_t* text;
    WindowCommand command;
    Use use;
    char key;  // with Ctrl, in a capital also with Shift; 0: none
    Place place;
};

constexpr Button kButtons[] = {
    {L"&New", WindowCommand::kNew, Use::kAlways, 'n', {9, 1, 0, 2}},
    {L"&Open", WindowCommand::kOpen, Use::kOnClosed, 'o', {9, 1, 2, 4}},
    {L"&Save", WindowCommand::kSave, Use::kOnCurrent, 's', {9, 1, 4, 6}},
    {L"Save &As", WindowCommand::kSaveAs, Use::kOnCurrent, 'S', {9, 1, 6, 8}},
    {L"&Close", WindowCommand::kClose, Use::kOnCurrent, 'w', {10, 1, 0, 2}},
    {L"C&hange", WindowCommand::kChange, Use::kOnCurrent, 0, {14, 1, 0, 2}},
    {L"As&k for the port", WindowCommand::kAskForPort, Use::kAlways, 0, {19, 1, 0, 4}},
    {L"&Raise \"Missing Fonts\"", WindowCommand::kRaiseDialog, Use::kAlways, 0, {21, 1, 0, 5}},
};

struct Field {
    int identifier;
    const wchar_t* windowClass;
    DWORD style;
    Place place;
};

constexpr Field kFields[] = {
    {kDocumentList, L"LISTBOX", WS_BORDER | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, {1, 8, 0, 8}},
    {kFonts, L"EDIT", WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL, {13, 1, 0, 8}},
    {kPanelText, L"STATIC", SS_LEFT | SS_NOPREFIX, {17, 2, 0, 8}},
};

constexpr DWORD kTraceStyle =
    WS_BORDER | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | ES_AUTOHSCROLL;
// The default lets the trace of a long session grow into nothing: nobody would see the newest lines.
constexpr WPARAM kTraceCharacters = 64ULL * 1024 * 1024;

void Make(HWND window, const wchar_t* windowClass, const wchar_t* text, DWORD style, int identifier, HFONT font) {
    const HWND control =
        CreateWindowExW(0, windowClass, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 10, 10, window,
                        reinterpret_cast<HMENU>(INT_PTR{identifier}), GetModuleHandleW(nullptr), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

LONG HeightOfLine(HWND pane) {
    TEXTMETRICW metrics{};
    const HDC context = GetDC(pane);
    const auto font = reinterpret_cast<HFONT>(SendMessageW(pane, WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(context, font);
    GetTextMetricsW(context, &metrics);
    SelectObject(context, before);
    ReleaseDC(pane, context);
    return std::max(1L, metrics.tmHeight);
}

// Whether the last line is in sight.
bool IsAtEnd(HWND pane, LRESULT firstVisibleLine) {
    RECT area{};
    GetClientRect(pane, &area);
    return firstVisibleLine + area.bottom / HeightOfLine(pane) >= SendMessageW(pane, EM_GETLINECOUNT, 0, 0) - 1;
}

void Put(HWND window, int identifier, const Place& place) {
    const int eighth = (kColumn - kMargin) / 8;
    MoveWindow(GetDlgItem(window, identifier), kMargin + place.from * eighth, kMargin + place.line * kLine,
               (place.to - place.from) * eighth - 4, place.lines * kLine - 4, TRUE);
}

}  // namespace

void MakeAllControls(HWND window, HFONT font) {
    for (std::size_t i = 0; i < std::size(kLabels); ++i) {
        Make(window, L"STATIC", kLabels[i].text, SS_LEFT, kFirstLabel + static_cast<int>(i), font);
    }
    for (const Field& field : kFields) {
        Make(window, field.windowClass, L"", field.style, field.identifier, font);
    }
    for (std::size_t i = 0; i < std::size(kButtons); ++i) {
        Make(window, L"BUTTON", kButtons[i].text, WS_TABSTOP | BS_PUSHBUTTON, kFirstButton + static_cast<int>(i), font);
    }
    Make(window, L"EDIT", L"", kTraceStyle, kTrace, font);
    SendDlgItemMessageW(window, kTrace, EM_SETLIMITTEXT, kTraceCharacters, 0);
}

void LayControls(HWND window, int width, int height) {
    for (std::size_t i = 0; i < std::size(kLabels); ++i) {
        Put(window, kFirstLabel + static_cast<int>(i), kLabels[i].place);
    }
    for (const Field& field : kFields) {
        Put(window, field.identifier, field.place);
    }
    for (std::size_t i = 0; i < std::size(kButtons); ++i) {
        Put(window, kFirstButton + static_cast<int>(i), kButtons[i].place);
    }
    MoveWindow(GetDlgItem(window, kTrace), kColumn + kMargin, kMargin, std::max(0, width - kColumn - 2 * kMargin),
               std::max(0, height - 2 * kMargin), TRUE);
}

void EnableCommands(HWND window, bool ofClosed, bool ofCurrent) {
    for (std::size_t i = 0; i < std::size(kButtons); ++i) {
        if (kButtons[i].use != Use::kAlways) {
            const bool enabled = kButtons[i].use == Use::kOnClosed ? ofClosed : ofCurrent;
            EnableWindow(GetDlgItem(window, kFirstButton + static_cast<int>(i)), enabled ? TRUE : FALSE);
        }
    }
}

std::optional<WindowCommand> CommandOf(int identifier) {
    const int index = identifier - kFirstButton;
    return index < 0 || index >= static_cast<int>(std::size(kButtons)) ? std::nullopt
                                                                       : std::optional(kButtons[index].command);
}

HACCEL MakeAccelerators() {
    std::vector<ACCEL> keys;
    for (std::size_t i = 0; i < std::size(kButtons); ++i) {
        const char key = kButtons[i].key;
        if (key == 0) {
            continue;
        }
        const bool shifted = key >= 'A' && key <= 'Z';
        const auto code = static_cast<WORD>(shifted ? key : key - 'a' + 'A');
        const auto flags = static_cast<BYTE>(FVIRTKEY | FCONTROL | (shifted ? FSHIFT : 0));
        keys.push_back({flags, code, static_cast<WORD>(kFirstButton + static_cast<int>(i))});
    }
    return CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
}

HFONT MakeFont(const wchar_t* face, DWORD pitchAndFamily) {
    return CreateFontW(-12, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, pitchAndFamily, face);
}

void AppendText(HWND pane, const std::wstring& lines) {
    const LRESULT first = SendMessageW(pane, EM_GETFIRSTVISIBLELINE, 0, 0);
    const bool atEnd = IsAtEnd(pane, first);
    const auto end = static_cast<WPARAM>(GetWindowTextLengthW(pane));
    SendMessageW(pane, EM_SETSEL, end, static_cast<LPARAM>(end));
    SendMessageW(pane, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(lines.c_str()));
    if (atEnd) {
        SendMessageW(pane, WM_VSCROLL, SB_BOTTOM, 0);
    } else {
        const LRESULT now = SendMessageW(pane, EM_GETFIRSTVISIBLELINE, 0, 0);
        SendMessageW(pane, EM_LINESCROLL, 0, first - now);
    }
}

}  // namespace simhost
