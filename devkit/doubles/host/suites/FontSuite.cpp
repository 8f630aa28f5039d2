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
    const SuiteCall call(kName, "GetDefaultFont", script);
    return call.Perform([&]() -> AIErr {
        if (font == nullptr) {
            return call.BadArgument("nowhere to put the font");
        }
        const auto found = Host().model.defaultFonts.find(script);
        if (found == Host().model.defaultFonts.end()) {
            return kNoFont;
        }
        *font = static_cast<AIFontKey>(Host().model.FontKey(found->second));
        return 0;
    });
}

AIErr GetPostScriptFontName(AIFontKey font, char* name, std::int16_t nameSizeInBytes) {
    const SuiteCall call(kName, "GetPostScriptFontName", nameSizeInBytes);
    return call.Perform([&]() -> AIErr {
        if (name == nullptr || nameSizeInBytes < 1) {
            return call.BadArgument("no buffer for the name");
        }
        // A null key is a question that the host answers, a key that it never gave out is a mistake.
        if (font == nullptr) {
            return kNoFont;
        }
        const std::string* const postScriptName = Host().model.fontKeys.Find(font);
        if (postScriptName == nullptr) {
            return call.Stale(Host().model.fontKeys, font, "font key");
        }
        // A name that does not fit fills the buffer to its last byte and is not terminated.
        std::memcpy(name, postScriptName->c_str(),
                    std::min(postScriptName->size() + 1, static_cast<std::size_t>(nameSizeInBytes)));
        return 0;
    });
}

AIErr FontKeyFromFont(ATE::FontRef reference, AIFontKey* font) {
    const SuiteCall call(kName, "FontKeyFromFont");
    return call.Perform([&] {
        if (font == nullptr) {
            return call.BadArgument("nowhere to put the font");
        }
        const Counted<FontObject>* const object = Host().objects.fonts.Find(reference);
        if (object == nullptr) {
            return call.Stale(Host().objects.fonts, reference, "font");
        }
        *font = static_cast<AIFontKey>(Host().model.FontKey(object->content.font));
        return 0;
    });
}

}  // namespace

void InstallFontSuite(SuiteStore& suites) {
    auto& table = suites.Table<AIFontSuite>(kName);
    table.GetDefaultFont = &GetDefaultFont;
    table.GetPostScriptFontName = &GetPostScriptFontName;
    table.FontKeyFromFont = &FontKeyFromFont;
}

}  // namespace simhost
