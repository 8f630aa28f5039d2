// The narrow form of the parser lies apart from the others because it alone needs the Windows runtime library.
#include <cstdlib>
#include <vector>

#include "json/JsonParser.h"

std::unique_ptr<JsonValue> ParseNarrowJson(const std::string& text) {
    // No locale makes more than one unit of a byte.
    std::vector<wchar_t> units(text.size() + 1);
    if (mbstowcs_s(nullptr, units.data(), units.size(), text.c_str(), text.size()) != 0) {
        return nullptr;
    }
    return ParseJson(std::wstring_view(units.data()));
}
