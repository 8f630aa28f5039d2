// Windows of the watched process in which somebody could answer a question.
// Thread: any but one of the watched process.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace simhost {

struct OpenDialog {
    std::string title;
    std::string text;  // of its labels
    std::string className;
    DWORD thread;  // whose window it is
};

// One that is visible and whose thread handles messages; the host's main window is none.
std::optional<OpenDialog> FindOpenDialog(DWORD process);

std::string InWords(const OpenDialog& dialog);

}  // namespace simhost
