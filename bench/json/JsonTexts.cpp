#include "json/JsonTexts.h"

namespace bench {

namespace {

std::string Item(const std::string& number, const std::string& children) {
    return R"({"id":"com.example.fonts.)" + number + R"(","title":"Font set )" + number +
           R"(","enabled":true,"checked":false,"child":[)" + children + "]}";
}

// `make` of each number below `count`, separated by commas.
template <typename Make>
std::string List(int count, const Make& make) {
    std::string list;
    for (int i = 0; i < count; ++i) {
        list += (i == 0 ? "" : ",") + make(std::to_string(i));
    }
    return list;
}

}  // namespace

std::string SettingsText() { return R"({"DialogSuppression":1,"PickBestMatch":0})"; }

std::string MenuText() {
    const auto group = [](const std::string& number) {
        return Item(number, List(12, [&](const std::string& inner) { return Item(number + "." + inner, ""); }));
    };
    return "[" + List(4, group) + "]";
}

std::string ReportText(int fonts, int placedFiles) {
    const auto font = [](const std::string& number) {
        return R"({"PostScriptName":"Garalde)" + number + R"(Pro-SemiboldItalic"})";
    };
    // Not all of a path is ASCII.
    const auto path = [](const std::string& number) {
        return "\"C:\\\\Users\\\\designer\\\\Documents\\\\Entw\xC3\xBCrfe\\\\Links\\\\image " + number + ".psd\"";
    };
    return R"({"DocumentFonts":[)" + List(fonts, font) + R"(],"LinkedDocuments":[)" + List(placedFiles, path) + "]}";
}

}  // namespace bench
