#include "Bundle.h"

#include <algorithm>

#include "support/TextConversion.h"

Bundle::Bundle(const Identity& identity) : mAnonymizer(identity) {}

void Bundle::Add(const std::string& folder, std::wstring_view name, std::wstring_view text) {
    const std::string file = Utf8FromWindowsText(mAnonymizer.FileNameWithoutNames(name));
    // Before the suffix, which tells Windows the program to open it with.
    const std::size_t suffix = std::min(file.rfind('.'), file.size());
    std::string free = folder + file;
    for (int number = 2; mFiles.contains(free); ++number) {
        free = folder + file.substr(0, suffix) + "-" + std::to_string(number) + file.substr(suffix);
    }
    mFiles.emplace(free, Utf8FromWindowsText(mAnonymizer.WithoutNames(text)));
}
