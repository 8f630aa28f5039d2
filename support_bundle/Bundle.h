// What goes into a support bundle, all of it text, none of it with the user's names: every text and every file name
// goes through an Anonymizer here and nowhere else.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "Anonymizer.h"

class Bundle {
  public:
    explicit Bundle(const Identity& identity);

    // `folder` is empty or ends in a slash. Of two files of one name in a folder, the second one's name gets a number.
    void Add(const std::string& folder, std::wstring_view name, std::wstring_view text);

    // By path within the archive, which is also the order there; UTF-8.
    const std::map<std::string, std::string>& Files() const { return mFiles; }

  private:
    Anonymizer mAnonymizer;
    std::map<std::string, std::string> mFiles;
};
