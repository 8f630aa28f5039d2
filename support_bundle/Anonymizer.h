// Takes user names out of texts: the profile's folder becomes %USERPROFILE%, a name of the user anywhere else <user>,
// and so does the name of each other folder below the one of all profiles. Whatever the case, with any separators, and
// in the forms in which texts carry paths on: separators and letters escaped for JSON ("C:\\Users\\J\u00f6rg", also
// twice) or for a URL ("C:/Users/J%C3%B6rg").
//
// A name counts where no letter stands before or behind it, so that the name "Anna" leaves "Joanna" alone. Behind the
// folder of all profiles the beginning of the name is enough, since a line of a log may have been cut there; behind
// another separator two letters of it, when the log's mark of a cut follows: "D:\Home\Joha...".
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Identity.h"

class Anonymizer {
  public:
    explicit Anonymizer(Identity identity);

    std::wstring WithoutNames(std::wstring_view text) const;
    // For names of files, which cannot hold all characters.
    std::wstring FileNameWithoutNames(std::wstring_view name) const;

  private:
    // The size of what stands at `place` and has to go; 0 when it may stay.
    std::size_t ProfileAt(std::wstring_view text, std::size_t place) const;
    // The profile of somebody else: what stays, up to the name, and the name, of which there is none when its size is
    // 0.
    struct OtherProfile {
        std::size_t before = 0;
        std::size_t nameSize = 0;
    };
    OtherProfile OtherProfileAt(std::wstring_view text, std::size_t place) const;
    std::size_t NameAt(std::wstring_view text, std::size_t place) const;
    std::wstring Replaced(std::wstring_view text, std::wstring_view profile, std::wstring_view name) const;

    Identity mIdentity;           // in capitals
    std::vector<bool> mMayBegin;  // by unit
};
