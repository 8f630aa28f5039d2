#include "documents/FontUsageReport.h"

#include <memory>
#include <string_view>
#include <utility>

#include "json/JsonValue.h"
#include "json/JsonWriter.h"
#include "support/Log.h"
#include "support/TextConversion.h"

namespace {

// Each text is converted in `units`, whose memory serves all of them.
std::unique_ptr<JsonValue> MakeFonts(const FontList& fonts, std::wstring& units) {
    auto values = JsonValue::MakeArray(L"DocumentFonts");
    for (const FontRecord& record : fonts) {
        AssignUtf16FromUtf8(units, PostScriptNameOf(record));
        values->Append(JsonValue::MakeObject()).Append(JsonValue::MakeString(units, L"PostScriptName"));
    }
    return values;
}

std::unique_ptr<JsonValue> MakeLinks(const PlacedFileList& placedFiles, std::wstring& units) {
    auto values = JsonValue::MakeArray(L"LinkedDocuments");
    for (const std::string& path : placedFiles) {
        AssignUtf16FromUtf8(units, path);
        values->Append(JsonValue::MakeString(units));
    }
    return values;
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

std::string BuildFontUsageReport(const FontList& fonts, const PlacedFileList& placedFiles) {
    const auto report = JsonValue::MakeObject();
    std::wstring units;
    report->Append(MakeFonts(fonts, units));
    report->Append(MakeLinks(placedFiles, units));
    return Utf8FromUtf16(WriteJson(report.get()));
}
