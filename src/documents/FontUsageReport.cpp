#include "documents/FontUsageReport.h"

#include <memory>
#include <string_view>
#include <utility>

#include "json/JsonValue.h"
#include "json/JsonWriter.h"
#include "support/Log.h"
#include "support/TextConversion.h"

namespace {

std::unique_ptr<JsonValue> MakeFonts(const FontList& fonts) {
    auto values = JsonValue::MakeArray(L"DocumentFonts");
    for (const FontRecord& record : fonts) {
        auto name = JsonValue::MakeString(Utf16FromUtf8(PostScriptNameOf(record)), L"PostScriptName");
        values->Append(JsonValue::MakeObject()).Append(std::move(name));
    }
    return values;
}

std::unique_ptr<JsonValue> MakeLinks(const PlacedFileList& placedFiles) {
    auto values = JsonValue::MakeArray(L"LinkedDocuments");
    for (const std::string& path : placedFiles) {
        values->Append(JsonValue::MakeString(Utf16FromUtf8(path)));
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
    report->Append(MakeFonts(fonts));
    report->Append(MakeLinks(placedFiles));
    return Utf8FromUtf16(WriteJson(report.get()));
}
