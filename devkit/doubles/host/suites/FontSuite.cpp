// "AI Font Suite": keys of fonts and their PostScript names.
#include "host/FontSuite.h"

#include <algorithm>
#include <cstring>

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SuiteCall.h"

namespace simhost {

namespace {

constexpr const char* kName = "AI Font Suite";
constexpr AIErr kNoFont = static_cast<AIErr>(FourCharCode("NFNT"));

AIErr GetDefaultFont(std::int32_t script, AIFontKey* font) {
    const SuiteCall call(kName, "GetDefaultFont");
    if (call.code != 0) {
        return call.code;
    }
    if (font == nullptr) {
        return call.BadArgument("nowhere to put the font");
    }
    const auto found = Host().model.defaultFonts.find(script);
    if (found == Host().model.defaultFonts.end()) {
        return kNoFont;
    }
    *font = static_cast<AIFontKey>(Host().model.FontKey(found->second));
    return 0;
}

AIErr GetPostScriptFontName(AIFontKey font, char* name, std::int16_t nameSizeInBytes) {
    const SuiteCall call(kName, "GetPostScriptFontName");
    if (call.code != 0) {
        return call.code;
    }
    if (name == nullptr || nameSizeInBytes < 1) {
        return call.BadArgument("no buffer for the name");
    }
    // No font is a question that the host answers, a font that it never gave out is a mistake.
    if (font == nullptr) {
        return kNoFont;
    }
    const std::string* const postScriptName = Host().model.fontKeys.Find(font);
    if (postScriptName == nullptr) {
        return call.Stale(Host().model.fontKeys, font, "font key");
    }
    const std::size_t length = std::min(postScriptName->size(), static_cast<std::size_t>(nameSizeInBytes) - 1);
    std::memcpy(name, postScriptName->data(), length);
    name[length] = '\0';
    return 0;
}

AIErr FontKeyFromFont(ATE::FontRef reference, AIFontKey* font) {
    const SuiteCall call(kName, "FontKeyFromFont");
    if (call.code != 0) {
        return call.code;
    }
    if (font == nullptr) {
        return call.BadArgument("nowhere to put the font");
    }
    const Counted<FontObject>* const object = Host().objects.fonts.Find(reference);
    if (object == nullptr) {
        return call.Stale(Host().objects.fonts, reference, "font");
    }
    *font = static_cast<AIFontKey>(Host().model.FontKey(object->content.font));
    return 0;
}

}  // namespace

void InstallFontSuite(SuiteStore& suites) {
    auto& table = suites.Table<AIFontSuite>(kName);
    table.GetDefaultFont = &GetDefaultFont;
    table.GetPostScriptFontName = &GetPostScriptFontName;
    table.FontKeyFromFont = &FontKeyFromFont;
}

}  // namespace simhost
