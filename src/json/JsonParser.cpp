#include "json/JsonParser.h"

#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "json/JsonScalarReader.h"
#include "json/JsonTextCursor.h"

namespace {

// An array or an object whose closing bracket has not come yet.
class OpenContainer {
  public:
    explicit OpenContainer(JsonValue::Array elements) : mContent(std::move(elements)) {}
    explicit OpenContainer(JsonValue::Object members) : mContent(std::move(members)) {}
    // Move-only, and said so: a vector would otherwise try to copy what it holds where a map's move may throw.
    OpenContainer(const OpenContainer&) = delete;
    OpenContainer& operator=(const OpenContainer&) = delete;
    OpenContainer(OpenContainer&&) = default;
    OpenContainer& operator=(OpenContainer&&) = delete;
    ~OpenContainer() = default;

    bool IsObject() const noexcept { return std::holds_alternative<JsonValue::Object>(mContent); }
    wchar_t ClosingBracket() const noexcept { return IsObject() ? L'}' : L']'; }

    // Objects only: the key of the value that Add gets next.
    void SetKey(std::wstring key) noexcept { mKey = std::move(key); }

    void Add(std::unique_ptr<JsonValue> value) {
        if (auto* elements = std::get_if<JsonValue::Array>(&mContent)) {
            elements->push_back(std::move(value));
        } else {
            std::get<JsonValue::Object>(mContent).insert_or_assign(std::move(mKey), std::move(value));
        }
    }

    // The finished value; the container itself is then empty.
    std::unique_ptr<JsonValue> Close() {
        return std::visit([](auto& content) { return std::make_unique<JsonValue>(std::move(content)); }, mContent);
    }

  private:
    std::variant<JsonValue::Array, JsonValue::Object> mContent;
    std::wstring mKey;
};

// Reads one value of any depth: the containers that are open lie in a list of its own instead of on the call stack.
class ValueReader {
  public:
    explicit ValueReader(JsonTextCursor& cursor) noexcept : mCursor(cursor) {}

    // Null on any error.
    std::unique_ptr<JsonValue> Read() {
        while (Begin()) {
            if (!mFinished) {
                continue;
            }
            if (!AddToContainers()) {
                return nullptr;
            }
            if (mFinished) {
                return std::move(mFinished);
            }
        }
        return nullptr;
    }

  private:
    // Reads a scalar or an empty container whole (mFinished), or opens a container up to its first value.
    bool Begin() {
        if (mCursor.Take(L'[')) {
            return BeginContainer<JsonValue::Array>();
        }
        if (mCursor.Take(L'{')) {
            return BeginContainer<JsonValue::Object>();
        }
        mFinished = ReadJsonScalar(mCursor);
        return mFinished != nullptr;
    }

    template <typename Content>
    bool BeginContainer() {
        OpenContainer container{Content{}};
        mCursor.SkipWhitespace();
        if (mCursor.Take(container.ClosingBracket())) {
            mFinished = container.Close();
            return true;
        }
        mOpen.push_back(std::move(container));
        return ReadKeyIfDue();
    }

    // Gives the finished value to its container and closes every container that ends with it. Afterwards either the
    // next value is due, or the outermost value is finished.
    bool AddToContainers() {
        while (!mOpen.empty()) {
            mOpen.back().Add(std::move(mFinished));
            mCursor.SkipWhitespace();
            if (mCursor.Take(L',')) {
                mCursor.SkipWhitespace();
                return ReadKeyIfDue();
            }
            if (!mCursor.Take(mOpen.back().ClosingBracket())) {
                return false;
            }
            mFinished = mOpen.back().Close();
            mOpen.pop_back();
        }
        return true;
    }

    // In an object, the key and the colon before a value; in an array, nothing.
    bool ReadKeyIfDue() {
        if (!mOpen.back().IsObject()) {
            return true;
        }
        std::optional<std::wstring> key = ReadJsonString(mCursor);
        if (!key) {
            return false;
        }
        mOpen.back().SetKey(*std::move(key));
        mCursor.SkipWhitespace();
        if (!mCursor.Take(L':')) {
            return false;
        }
        mCursor.SkipWhitespace();
        return true;
    }

    JsonTextCursor& mCursor;
    std::vector<OpenContainer> mOpen;  // the innermost last
    std::unique_ptr<JsonValue> mFinished;
};

}  // namespace

std::unique_ptr<JsonValue> ParseJson(std::wstring_view text) {
    JsonTextCursor cursor(text);
    cursor.SkipWhitespace();
    std::unique_ptr<JsonValue> value = ValueReader(cursor).Read();
    cursor.SkipWhitespace();
    return cursor.AtEnd() ? std::move(value) : nullptr;
}
