#include "Bundle.h"

#include "support/TextConversion.h"

Bundle::Bundle(const Identity& identity) : mAnonymizer(identity) {}

void Bundle::Add(const std::string& folder, std::wstring_view name, std::wstring_view text) {
    const std::string path = folder + Utf8FromWindowsText(mAnonymizer.FileNameWithoutNames(name));
    std::string free = path;
    for (int number = 2; mFiles.contains(free); ++number) {
        free = path + "-" + std::to_string(number);
    }
    mFiles.emplace(free, Utf8FromWindowsText(mAnonymizer.WithoutNames(text)));
}
