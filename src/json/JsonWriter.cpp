#include "json/JsonWriter.h"

#include <cstddef>
#include <string_view>

#include "json/JsonNumberText.h"
#include "json/JsonOutput.h"

namespace {

using namespace std::string_view_literals;

// Takes what a text consists of and counts for how many units there should be room: as if each unit of a string had a
// backslash and a number were the longest one. To look at the units would take as long as to write them; should a
// string be full of control units, the text grows while it is written.
class Measurement {
  public:
    std::size_t Size() const noexcept { return mSize; }

    void AddUnit(wchar_t) noexcept { ++mSize; }
    void AddKeyword(std::wstring_view keyword) noexcept { mSize += keyword.size(); }
    void AddNumber(double) noexcept { mSize += JsonNumberText::kMaxSize; }
    void AddString(std::wstring_view units) noexcept { mSize += 2 + 2 * units.size(); }

  private:
    std::size_t mSize = 0;
};

// A scalar whole, of a container only the opening bracket.
template <typename Target>
void WriteBeginning(const JsonValue& value, Target& target) {
    switch (value.GetKind()) {
        case JsonValue::Kind::Null:
            return target.AddKeyword(L"null"sv);
        case JsonValue::Kind::String:
            return target.AddString(value.AsString());
        case JsonValue::Kind::Bool:
            return target.AddKeyword(value.AsBool() ? L"true"sv : L"false"sv);
        case JsonValue::Kind::Number:
            return target.AddNumber(value.AsNumber());
        case JsonValue::Kind::Array:
            return target.AddUnit(L'[');
        case JsonValue::Kind::Object:
            return target.AddUnit(L'{');
    }
}

// Nothing of a scalar.
template <typename Target>
void WriteEnd(const JsonValue& value, Target& target) {
    if (value.IsArray()) {
        target.AddUnit(L']');
    } else if (value.IsObject()) {
        target.AddUnit(L'}');
    }
}

// Ends the value and every container that ends with it, and returns what comes next: null when that is the root.
template <typename Target>
const JsonValue* WriteEnds(const JsonValue* value, const JsonValue& root, Target& target) {
    while (true) {
        WriteEnd(*value, target);
        if (value == &root) {
            return nullptr;
        }
        if (const JsonValue* const sibling = value->NextSibling()) {
            return sibling;
        }
        value = value->ParentOfLast();
    }
}

// Writes a tree of any depth: from value to value, without a list of the containers that are open.
template <typename Target>
void WriteTree(const JsonValue& root, Target& target) {
    const JsonValue* value = &root;
    while (value != nullptr) {
        if (value != &root && value->IsMember()) {
            target.AddString(value->Key());
            target.AddUnit(L':');
        }
        WriteBeginning(*value, target);
        if (const JsonValue* const child = value->FirstChild()) {
            value = child;
            continue;
        }
        value = WriteEnds(value, root, target);
        if (value != nullptr) {
            target.AddUnit(L',');
        }
    }
}

}  // namespace

std::wstring WriteJson(const JsonValue* value) {
    if (value == nullptr) {
        return {};
    }
    Measurement measurement;
    WriteTree(*value, measurement);
    JsonOutput output(measurement.Size());
    WriteTree(*value, output);
    return output.TakeText();
}
