#include "simhost/report/Colour.h"

#include <windows.h>

#include <cstdlib>

namespace simhost {

namespace {

bool IsSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

// Asks the console to understand the codes. False when standard output is no console, or one that cannot.
bool TerminalTakesColour() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(output, &mode) != 0 && SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

const char* CodeOf(Tone tone) {
    switch (tone) {
        case Tone::kTitle:
            return "1";
        case Tone::kGood:
            return "32";
        case Tone::kBad:
            return "31";
        case Tone::kWarning:
            return "33";
        case Tone::kPlain:
            break;
    }
    return nullptr;
}

}  // namespace

bool UsesColour(ColourChoice choice) {
    if (choice != ColourChoice::kAuto) {
        return choice == ColourChoice::kAlways;
    }
    const char* const terminal = std::getenv("TERM");
    return !IsSet("NO_COLOR") && (terminal == nullptr || std::string_view(terminal) != "dumb") && TerminalTakesColour();
}

std::string Coloured(std::string_view text, Tone tone, bool colour) {
    const char* const code = CodeOf(tone);
    return !colour || code == nullptr ? std::string(text)
                                      : std::string("\x1b[") + code + "m" + std::string(text) + "\x1b[0m";
}

}  // namespace simhost
