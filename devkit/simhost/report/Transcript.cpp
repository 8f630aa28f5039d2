#include "simhost/report/Transcript.h"

#include <cstdio>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

constexpr const char* kShortName = "<work>";

std::string ShowControlCharacters(const std::string& text) {
    std::string shown;
    for (const char c : text) {
        char code[8];
        if (static_cast<unsigned char>(c) < 0x20) {
            std::snprintf(code, sizeof code, "<%02X>", static_cast<unsigned>(c));
            shown += code;
        } else {
            shown += c;
        }
    }
    return shown;
}

}  // namespace

void Transcript::Title(std::string_view title) const {
    Line(0, title);
    Line(0, std::string(title.size(), '='));
}

void Transcript::Step(std::string_view say) const {
    Line(0, "");
    Line(0, say);
}

void Transcript::Line(int indent, std::string_view text) const {
    if (mQuiet) {
        return;
    }
    std::printf("%*s%s\n", indent, "", Shorten(text).c_str());
    std::fflush(stdout);
}

std::string Transcript::Shorten(std::string_view text) const {
    std::string shortened = ReplaceAll(std::string(text), AsJsonText(mWorkFolder), kShortName);
    shortened = ReplaceAll(std::move(shortened), mWorkFolder, kShortName);
    shortened = ReplaceAll(std::move(shortened), ReplaceAll(mWorkFolder, "\\", "/"), kShortName);
    return ShowControlCharacters(shortened);
}

}  // namespace simhost
