// The parser on any units: what is no UTF-16 has nobody to compare with, but must come out as it went in.
#include <memory>
#include <optional>

#include "fuzz/reference/JsonTrees.h"
#include "fuzz/reference/Text.h"
#include "fuzz/Targets.h"
#include "json/JsonParser.h"

void FuzzJsonUnits(std::string_view bytes) {
    const std::wstring halves = Widened(bytes);
    std::wstring units;
    for (std::size_t i = 0; i + 1 < halves.size(); i += 2) {
        units += static_cast<wchar_t>(halves[i] + halves[i + 1] * 256);
    }
    const std::unique_ptr<JsonValue> value = ParseJson(units);
    if (const std::optional<std::string> utf8 = ReferenceUtf8(units)) {
        RequireTheSameAsNlohmann(value.get(), *utf8);
    }
    if (value != nullptr) {
        RequireRoundTrip(*value, units.size());
    }
}
