// What a run tells a person, on standard output. File names are shortened to the work folder, so that the same
// scenario prints the same everywhere.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simhost {

class Transcript {
  public:
    // Prints nothing when `quiet`.
    Transcript(std::string workFolder, bool quiet) : mWorkFolder(std::move(workFolder)), mQuiet(quiet) {}

    void Title(std::string_view title);
    void Step(std::string_view say);
    void Line(int indent, std::string_view text);

    // What was told so far, also when nothing is printed.
    const std::vector<std::string>& Lines() const { return mLines; }
    // From now on each line also goes to `listener`; none when it is empty.
    void ListenWith(std::function<void(const std::string& line)> listener) { mListener = std::move(listener); }
    // The lines that `action` brings about, which are not told.
    std::vector<std::string> HoldBack(const std::function<void()>& action);

    // The text with the work folder shortened, and control characters made visible.
    std::string Shorten(std::string_view text) const;

  private:
    std::string mWorkFolder;
    bool mQuiet;
    std::vector<std::string> mLines;
    std::optional<std::vector<std::string>> mHeldBack;
    std::function<void(const std::string& line)> mListener;
};

}  // namespace simhost
