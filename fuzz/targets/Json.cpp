// The parser beside nlohmann's, and what the writer makes of the values.
#include <memory>
#include <optional>

#include "fuzz/reference/JsonTrees.h"
#include "fuzz/reference/Text.h"
#include "fuzz/Targets.h"
#include "json/JsonParser.h"

void FuzzJson(std::string_view bytes) {
    const std::optional<std::wstring> decoded = ReferenceUtf16(bytes);
    const std::wstring units = decoded ? *decoded : Widened(bytes);
    const std::unique_ptr<JsonValue> value = ParseJson(units);
    RequireTheSameAsNlohmann(value.get(), decoded ? bytes : *ReferenceUtf8(units));
    if (value != nullptr) {
        RequireRoundTrip(*value, units.size());
    }
}
