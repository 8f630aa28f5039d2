// The controls of the host's window: which there are, where they lie, and the command that each stands for.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "simhost/by_hand/HostWindow.h"

namespace simhost {

constexpr int kDocumentList = 100;
constexpr int kFonts = 101;
constexpr int kPanelText = 102;
constexpr int kTrace = 103;

void MakeAllControls(HWND window, HFONT font);
void LayControls(HWND window, int width, int height);

// Enables or disables the buttons of the commands for a document that is closed, and for the current one.
void EnableCommands(HWND window, bool ofClosed, bool ofCurrent);
// The command of a button or key; nothing for any other control.
std::optional<WindowCommand> CommandOf(int identifier);
// Ctrl and a letter for the document commands. The caller destroys the table.
HACCEL MakeAccelerators();
HFONT MakeFont(const wchar_t* face, DWORD pitchAndFamily);

// Adds lines at the end of a text pane. Whoever reads the end goes on seeing it; whoever has scrolled back stays
// there.
void AppendText(HWND pane, const std::wstring& lines);

}  // namespace simhost
