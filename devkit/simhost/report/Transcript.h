// What a run tells a person, on standard output. File names are shortened to the work folder, so that the same
// scenario prints the same everywhere.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace simhost {

class Transcript {
  public:
    // Prints nothing when `quiet`.
    Transcript(std::string workFolder, bool quiet) : mWorkFolder(std::move(workFolder)), mQuiet(quiet) {}

    void Title(std::string_view title) const;
    void Step(std::string_view say) const;
    void Line(int indent, std::string_view text) const;

    // The text with the work folder shortened, and control characters made visible.
    std::string Shorten(std::string_view text) const;

  private:
    std::string mWorkFolder;
    bool mQuiet;
};

}  // namespace simhost
