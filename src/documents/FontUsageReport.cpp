#include "documents/FontUsageReport.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "json/JsonOutput.h"
#include "support/Log.h"
#include "support/TextConversion.h"

namespace {

// The report's text but for its strings.
constexpr std::wstring_view kBeforeFonts = LR"({"DocumentFonts":[)";
constexpr std::wstring_view kBeforeName = LR"({"PostScriptName":)";
constexpr std::wstring_view kBehindName = L"}";
constexpr std::wstring_view kBetweenFontsAndLinks = LR"(],"LinkedDocuments":[)";
constexpr std::wstring_view kBehindLinks = L"]}";

// Writes the elements of an array: a string each, between `before` and `behind`.
template <class Texts, class TextOf>
void AddStrings(JsonOutput& json, const Texts& texts, TextOf textOf, std::wstring_view before,
                std::wstring_view behind) {
    std::wstring units;  // its memory serves all of them
    bool isFirst = true;
    for (const auto& text : texts) {
        json.AddKeyword(std::exchange(isFirst, false) ? L"" : L",");
        json.AddKeyword(before);
        AssignUtf16FromUtf8(units, textOf(text));
        json.AddString(units);
        json.AddKeyword(behind);
    }
}

// Enough for most: what stands around a name is 22 units, and a path seldom has as many separators, of which each is
// escaped.
std::size_t UsualSize(const FontList& fonts, const PlacedFileList& placedFiles) {
    constexpr std::size_t kName = 64;  // with what stands around it
    constexpr std::size_t kAroundPath = 24;
    std::size_t size = 64 + kName * fonts.size();
    for (const std::string& path : placedFiles) {
        size += path.size() + kAroundPath;
    }
    return size;
}

}  // namespace

void CrossPluginUtils::CreateFontDataForOneFont(const std::string& name, FontRecord& record) {
    constexpr const char* kName = "CrossPluginUtils::CreateFontDataForOneFont";
    LogMessage(kLogEntry, "Entering %s('%s')", kName, name.c_str());
    if (std::string& entry = record.try_emplace("PostScriptName").first->second; &entry != &name) {
        entry = name;
    }
    LogMessage(kLogExit, "Exiting %s()", kName);
}

bool CrossPluginUtils::AddFontToArray(const FontRecord& record, bool checkDuplicates, FontList& fonts) {
    constexpr const char* kName = "CrossPluginUtils::AddFontToArray";
    LogMessage(kLogEntry, "Entering %s()", kName);
    const bool append = !checkDuplicates || !fonts.Contains(PostScriptNameOf(record));
    if (append) {
        fonts.Append(record);
    }
    LogMessage(kLogExit, "%s() returning %d", kName, append ? 1 : 0);
    return append;
}

// Written as it comes. A tree of the same content has a block of the heap for each value, and to take and give back
// these takes longer than all the rest.
std::string BuildFontUsageReport(const FontList& fonts, const PlacedFileList& placedFiles) {
    JsonOutput json(UsualSize(fonts, placedFiles));
    json.AddKeyword(kBeforeFonts);
    AddStrings(json, fonts, PostScriptNameOf, kBeforeName, kBehindName);
    json.AddKeyword(kBetweenFontsAndLinks);
    AddStrings(json, placedFiles, std::identity(), {}, {});
    json.AddKeyword(kBehindLinks);
    return Utf8FromUtf16(json.TakeText());
}
