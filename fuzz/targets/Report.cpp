// The font-usage report: valid UTF-8 JSON from which another reader gets the same names and paths, or the library's
// exception for a text that is not UTF-8.
#include <utf8cpp/utf8.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "documents/FontUsageReport.h"
#include "fuzz/reference/Lines.h"
#include "fuzz/reference/Text.h"
#include "fuzz/Targets.h"
#include "json/JsonParser.h"
#include "json/JsonWriter.h"

namespace {

using Texts = std::vector<std::string>;

std::optional<std::string> Report(const FontList& fonts, const PlacedFileList& placedFiles) {
    try {
        return BuildFontUsageReport(fonts, placedFiles);
    } catch (const utf8::exception&) {
        return std::nullopt;
    }
}

void AddFont(const std::string& name, bool checkDuplicates, FontList& fonts, Texts& names) {
    FontRecord record;
    CrossPluginUtils::CreateFontDataForOneFont(name, record);
    const bool isNew = !checkDuplicates || std::find(names.begin(), names.end(), name) == names.end();
    Require(CrossPluginUtils::AddFontToArray(record, checkDuplicates, fonts) == isNew, "report: whether a font is new");
    if (isNew) {
        names.push_back(name);
    }
}

// Of text that was valid UTF-8.
nlohmann::ordered_json Expected(const Texts& names, const Texts& paths) {
    nlohmann::ordered_json fonts = nlohmann::ordered_json::array();
    for (const std::string& name : names) {
        fonts.push_back({{"PostScriptName", name}});
    }
    return {{"DocumentFonts", fonts}, {"LinkedDocuments", paths}};
}

}  // namespace

void FuzzReport(std::string_view bytes) {
    FontList fonts;
    Texts names;
    Texts paths;
    for (const std::string& line : LinesOf(bytes)) {
        if (line.starts_with('F') || line.starts_with('D')) {
            AddFont(line.substr(1), line.starts_with('D'), fonts, names);
        } else if (line.starts_with('P')) {
            paths.push_back(line.substr(1));
        }
    }
    Require(fonts.size() == names.size(), "report: the number of fonts");

    const auto isUtf8 = [](const std::string& text) { return CodePointsOf(text).has_value(); };
    const bool areUtf8 =
        std::all_of(names.begin(), names.end(), isUtf8) && std::all_of(paths.begin(), paths.end(), isUtf8);
    const std::optional<std::string> report = Report(fonts, paths);
    Require(report.has_value() == areUtf8, "report: an exception for what is not UTF-8, and only for that");
    if (!report) {
        return;
    }
    Require(isUtf8(*report), "report: not UTF-8");
    const auto read = nlohmann::ordered_json::parse(*report, nullptr, false);
    Require(read == Expected(names, paths), "report: another reader gets something else");
    Require(WriteJson(ParseJson(*ReferenceUtf16(*report)).get()) == *ReferenceUtf16(*report),
            "report: read and written again it differs");
}
