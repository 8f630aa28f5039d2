#include "json/JsonParser.h"

#include <optional>
#include <utility>

#include "json/JsonScalarReader.h"
#include "json/JsonTextCursor.h"

namespace {

wchar_t ClosingBracket(const JsonValue& container) noexcept { return container.IsObject() ? L'}' : L']'; }

// Reads one value of any depth: the containers that are open are no list on the call stack but a path in the tree, each
// the last child of the one before.
class TreeReader {
  public:
    explicit TreeReader(JsonTextCursor& cursor) noexcept : mCursor(cursor) {}

    // Null on any error.
    std::unique_ptr<JsonValue> Read() {
        while (ReadKeyIfDue() && Begin() && GoOn()) {
            if (mOpen == nullptr) {
                return std::move(mRoot);
            }
        }
        return nullptr;
    }

  private:
    // In an object, the key and the colon before a value; in an array, nothing.
    bool ReadKeyIfDue() noexcept {
        mKey.reset();
        if (mOpen == nullptr || !mOpen->IsObject()) {
            return true;
        }
        mKey = ReadJsonString(mCursor);
        mCursor.SkipWhitespace();
        if (!mKey || !mCursor.Take(L':')) {
            return false;
        }
        mCursor.SkipWhitespace();
        return true;
    }

    // Reads a scalar whole, of a container only the opening bracket.
    bool Begin() {
        const JsonText key = mKey.value_or(JsonText());
        if (mCursor.Take(L'[')) {
            mOpen = &Place(JsonValue::MakeArray(key));
        } else if (mCursor.Take(L'{')) {
            mOpen = &Place(JsonValue::MakeObject(key));
        } else if (std::unique_ptr<JsonValue> scalar = ReadJsonScalar(mCursor, key)) {
            Place(std::move(scalar));
        } else {
            return false;
        }
        return true;
    }

    JsonValue& Place(std::unique_ptr<JsonValue> value) {
        if (mOpen != nullptr) {
            return mOpen->AppendUnordered(std::move(value));
        }
        mRoot = std::move(value);
        return *mRoot;
    }

    // Closes every container that ends here. Afterwards either the next value is due, or the outermost one is finished.
    bool GoOn() noexcept {
        while (mOpen != nullptr) {
            mCursor.SkipWhitespace();
            if (!mCursor.Take(ClosingBracket(*mOpen))) {
                return TakeCommaIfDue();
            }
            mOpen->OrderMembers();
            mOpen = mOpen->ParentOfLast();
        }
        return true;
    }

    // Before every value of a container but the first.
    bool TakeCommaIfDue() noexcept {
        if (mOpen->FirstChild() == nullptr) {
            return true;
        }
        const bool found = mCursor.Take(L',');
        mCursor.SkipWhitespace();
        return found;
    }

    JsonTextCursor& mCursor;
    std::unique_ptr<JsonValue> mRoot;
    JsonValue* mOpen = nullptr;  // the innermost container that is open
    std::optional<JsonText> mKey;
};

}  // namespace

std::unique_ptr<JsonValue> ParseJson(std::wstring_view text) {
    JsonTextCursor cursor(text);
    cursor.SkipWhitespace();
    std::unique_ptr<JsonValue> value = TreeReader(cursor).Read();
    cursor.SkipWhitespace();
    return cursor.AtEnd() ? std::move(value) : nullptr;
}
