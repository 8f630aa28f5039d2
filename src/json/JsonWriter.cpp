#include "json/JsonWriter.h"

#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "json/JsonNumberText.h"

namespace {

void AppendNumber(std::wstring& text, double number) {
    if (!std::isfinite(number)) {
        text += L"null";
        return;
    }
    text += JsonNumberText(number).View();
}

// The letter after the backslash in the short form of an escape; 0 for units that have none.
wchar_t ShortEscape(wchar_t unit) noexcept {
    switch (unit) {
        case L'"':
        case L'/':  // optional in JSON; intentional, the bytes of a report are fixed
        case L'\\':
            return unit;
        case L'\b':
            return L'b';
        case L'\f':
            return L'f';
        case L'\n':
            return L'n';
        case L'\r':
            return L'r';
        case L'\t':
            return L't';
        default:
            return 0;
    }
}

void AppendString(std::wstring& text, std::wstring_view units) {
    constexpr std::wstring_view kHexDigits = L"0123456789ABCDEF";
    text += L'"';
    for (const wchar_t unit : units) {
        const auto code = static_cast<std::uint32_t>(unit);  // wchar_t is signed on some systems
        if (const wchar_t letter = ShortEscape(unit)) {
            text += L'\\';
            text += letter;
        } else if (code < 32) {
            text += L"\\u00";
            text += kHexDigits[code / 16];
            text += kHexDigits[code % 16];
        } else {
            text += unit;
        }
    }
    text += L'"';
}

// What is still to be written of an array or an object.
template <typename Content>
struct Remainder {
    typename Content::const_iterator begin;
    typename Content::const_iterator next;
    typename Content::const_iterator end;

    explicit Remainder(const Content& content) : begin(content.begin()), next(begin), end(content.end()) {}
};
using ArrayRemainder = Remainder<JsonValue::Array>;
using ObjectRemainder = Remainder<JsonValue::Object>;

// Writes a tree of any depth: the containers that are open lie in a list of its own instead of on the call stack.
class TreeWriter {
  public:
    std::wstring Write(const JsonValue* root) {
        Begin(root);
        while (!mOpen.empty()) {
            std::visit([this](auto& remainder) { Continue(remainder); }, mOpen.back());
        }
        return std::move(mText);
    }

  private:
    // Writes a scalar whole, of a container only the opening bracket.
    void Begin(const JsonValue* value) {
        if (!value) {
            return;
        }
        switch (value->GetKind()) {
            case JsonValue::Kind::Null:
                mText += L"null";
                break;
            case JsonValue::Kind::String:
                AppendString(mText, value->AsString());
                break;
            case JsonValue::Kind::Bool:
                mText += value->AsBool() ? L"true" : L"false";
                break;
            case JsonValue::Kind::Number:
                AppendNumber(mText, value->AsNumber());
                break;
            case JsonValue::Kind::Array:
                mText += L'[';
                mOpen.emplace_back(ArrayRemainder(value->AsArray()));
                break;
            case JsonValue::Kind::Object:
                mText += L'{';
                mOpen.emplace_back(ObjectRemainder(value->AsObject()));
                break;
        }
    }

    // Both write the next element or member of the innermost container, or its end. The reference to what remains is
    // dead once Begin has been called, which may open another container.
    void Continue(ArrayRemainder& array) {
        if (array.next == array.end) {
            return End(L']');
        }
        if (array.next != array.begin) {
            mText += L',';
        }
        Begin((array.next++)->get());
    }

    void Continue(ObjectRemainder& object) {
        if (object.next == object.end) {
            return End(L'}');
        }
        if (object.next != object.begin) {
            mText += L',';
        }
        const auto& [key, value] = *object.next++;
        AppendString(mText, key);
        mText += L':';
        Begin(value.get());
    }

    void End(wchar_t closingBracket) {
        mText += closingBracket;
        mOpen.pop_back();
    }

    std::wstring mText;
    std::vector<std::variant<ArrayRemainder, ObjectRemainder>> mOpen;  // the innermost last
};

}  // namespace

std::wstring WriteJson(const JsonValue* value) { return TreeWriter().Write(value); }
