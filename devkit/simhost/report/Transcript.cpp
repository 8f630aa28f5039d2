#include "simhost/report/Transcript.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

constexpr const char* kShortName = "<work>";
constexpr int kIndent = 2;

std::size_t Characters(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

std::string ShowControlCharacters(std::string_view text) {
    std::string shown;
    for (const char c : text) {
        char code[8];
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            std::snprintf(code, sizeof code, "<%02X>", static_cast<unsigned>(c));
            shown += code;
        } else {
            shown += c;
        }
    }
    return shown;
}

void Transcript::Title(std::string_view title) {
    Tell(std::string(title), Tone::kTitle);
    Tell(std::string(Characters(title), '='), Tone::kPlain);
    if (mVerbosity == Verbosity::kBrief) {
        Print("");
    }
}

void Transcript::Step(std::string_view say) {
    Tell("", Tone::kPlain);
    Tell(Shorten(say), Tone::kTitle);
}

void Transcript::BeginStep(const std::string& heading) {
    mHeading = Shorten(heading);
    mInStep = true;
    if (mVerbosity != Verbosity::kBrief) {
        Step(mHeading);
    }
}

void Transcript::Line(int indent, std::string_view text, Tone tone) {
    Tell(std::string(static_cast<std::size_t>(indent), ' ') + Shorten(text), tone);
}

void Transcript::EndStep(bool passed) {
    const std::vector<std::string> lines = std::exchange(mOfStep, {});
    mInStep = false;
    const std::string verdict = passed ? "ok" : "failed";
    const Tone tone = passed ? Tone::kGood : Tone::kBad;
    if (mVerbosity != Verbosity::kBrief) {
        Tell(std::string(kIndent, ' ') + verdict, tone);
        return;
    }
    Print(Coloured(verdict, tone, mColour) + (passed ? "      " : "  ") + mHeading);
    for (const std::string& line : lines) {
        if (!passed) {
            Print(line);
        }
    }
}

void Transcript::Tell(std::string line, Tone tone) {
    if (mHeldBack) {
        mHeldBack->push_back(std::move(line));
        return;
    }
    if (mVerbosity == Verbosity::kBrief && mInStep) {
        mOfStep.push_back(Coloured(line, tone, mColour));
    } else if (mVerbosity != Verbosity::kQuiet) {
        Print(line, tone);
    }
    if (mListener) {
        mListener(line);
    }
    mLines.push_back(std::move(line));
}

void Transcript::Print(const std::string& line, Tone tone) const {
    std::printf("%s\n", Coloured(line, tone, mColour).c_str());
    std::fflush(stdout);
}

std::string Transcript::Shorten(std::string_view text) const {
    std::string shortened = ReplaceAll(std::string(text), AsJsonText(mWorkFolder), kShortName);
    shortened = ReplaceAll(std::move(shortened), mWorkFolder, kShortName);
    shortened = ReplaceAll(std::move(shortened), ReplaceAll(mWorkFolder, "\\", "/"), kShortName);
    return ShowControlCharacters(shortened);
}

}  // namespace simhost
