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

void Transcript::Title(std::string_view title) {
    Line(0, title);
    Line(0, std::string(title.size(), '='));
}

void Transcript::Step(std::string_view say) {
    Line(0, "");
    Line(0, say);
}

void Transcript::Line(int indent, std::string_view text) {
    const std::string line = std::string(static_cast<std::size_t>(indent), ' ') + Shorten(text);
    if (mHeldBack) {
        mHeldBack->push_back(line);
        return;
    }
    mLines.push_back(line);
    if (!mQuiet) {
        std::printf("%s\n", line.c_str());
        std::fflush(stdout);
    }
    if (mListener) {
        mListener(line);
    }
}

std::vector<std::string> Transcript::HoldBack(const std::function<void()>& action) {
    mHeldBack.emplace();
    action();
    std::vector<std::string> lines = std::move(*mHeldBack);
    mHeldBack.reset();
    return lines;
}

std::string Transcript::Shorten(std::string_view text) const {
    std::string shortened = ReplaceAll(std::string(text), AsJsonText(mWorkFolder), kShortName);
    shortened = ReplaceAll(std::move(shortened), mWorkFolder, kShortName);
    shortened = ReplaceAll(std::move(shortened), ReplaceAll(mWorkFolder, "\\", "/"), kShortName);
    return ShowControlCharacters(shortened);
}

}  // namespace simhost
