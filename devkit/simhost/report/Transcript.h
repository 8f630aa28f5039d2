// What a run tells a person, on standard output. File names are shortened to the work folder, so that the same
// scenario prints the same everywhere.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simhost/report/Colour.h"

namespace simhost {

enum class Verbosity {
    kQuiet,  // nothing
    kBrief,  // a line for each step, and all about one that failed
    kFull,
};

class Transcript {
  public:
    Transcript(std::string workFolder, Verbosity verbosity, bool colour)
        : mWorkFolder(std::move(workFolder)), mVerbosity(verbosity), mColour(colour) {}

    void Title(std::string_view title);
    // A heading within a step.
    void Step(std::string_view say);
    // What follows is about one step, until EndStep tells what came of it.
    void BeginStep(const std::string& heading);
    void Line(int indent, std::string_view text, Tone tone = Tone::kPlain);
    void EndStep(bool passed);

    // What was told so far, also when nothing is printed.
    const std::vector<std::string>& Lines() const { return mLines; }
    // From now on each line also goes to `listener`; none when it is empty.
    void ListenWith(std::function<void(const std::string& line)> listener) { mListener = std::move(listener); }
    // From now on lines are not told, but kept until they are taken.
    void HoldBack() { mHeldBack.emplace(); }
    std::vector<std::string> TakeHeldBack() { return *std::exchange(mHeldBack, std::nullopt); }

    // The text with the work folder shortened.
    std::string Shorten(std::string_view text) const;

  private:
    void Tell(std::string line, Tone tone);
    void Print(const std::string& line, Tone tone = Tone::kPlain) const;

    std::string mWorkFolder;
    Verbosity mVerbosity;
    bool mColour;
    std::string mHeading;
    bool mInStep = false;
    std::vector<std::string> mOfStep;  // the lines of the step, as long as nobody knows whether they are printed
    std::vector<std::string> mLines;
    std::optional<std::vector<std::string>> mHeldBack;
    std::function<void(const std::string& line)> mListener;
};

// Control characters made visible: "<0A>".
std::string ShowControlCharacters(std::string_view text);

}  // namespace simhost
