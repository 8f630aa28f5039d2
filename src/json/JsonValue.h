// One node of a JSON tree.
// Thread: any, one at a time.
#pragma once

#include <concepts>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <variant>

#include "json/JsonText.h"

class JsonChildren;

// Texts are sequences of 16-bit code units: surrogate pairs are two units like any other.
//
// Each value is one block of the heap, which holds the units of its key and of its string as well. That is why values
// are made by functions and never lie on the stack.
class JsonValue {
  public:
    enum class Kind { Null = 0, String = 1, Bool = 2, Number = 3, Array = 4, Object = 5 };

    // Each fixes the kind for good. The key is that of a member; nobody asks other values for theirs. All may throw
    // std::bad_alloc.
    static std::unique_ptr<JsonValue> MakeNull(const JsonText& key = {});
    static std::unique_ptr<JsonValue> MakeString(const JsonText& text, const JsonText& key = {});
    // Exactly bool: a pointer or a string literal would silently become "true" otherwise.
    static std::unique_ptr<JsonValue> MakeBool(std::same_as<bool> auto truth, const JsonText& key = {}) {
        return Make(Payload(std::in_place_type<bool>, truth), key);
    }
    static std::unique_ptr<JsonValue> MakeNumber(double number, const JsonText& key = {});
    static std::unique_ptr<JsonValue> MakeArray(const JsonText& key = {});
    static std::unique_ptr<JsonValue> MakeObject(const JsonText& key = {});

    // Gives an array one more element, or an object one more member, which takes the place of one with an equal key.
    // Returns the child. An object's members need time for each member there is, unless they come in the order of their
    // keys: with many of them, use the two below.
    JsonValue& Append(std::unique_ptr<JsonValue> child);

    // The same, but the members of an object are in no order until OrderMembers is called, and none is replaced.
    JsonValue& AppendUnordered(std::unique_ptr<JsonValue> child);
    // Of members with equal keys the one that was appended last stays; the others are deleted.
    void OrderMembers() noexcept;

    JsonValue(const JsonValue&) = delete;
    JsonValue& operator=(const JsonValue&) = delete;

    // Deletes every descendant, at any depth on a stack of fixed size, and allocates nothing.
    ~JsonValue();
    static void operator delete(void* block) noexcept { ::operator delete(block); }

    Kind GetKind() const noexcept { return static_cast<Kind>(mPayload.index()); }
    bool IsNull() const noexcept { return GetKind() == Kind::Null; }
    bool IsString() const noexcept { return GetKind() == Kind::String; }
    bool IsBool() const noexcept { return GetKind() == Kind::Bool; }
    bool IsNumber() const noexcept { return GetKind() == Kind::Number; }
    bool IsArray() const noexcept { return GetKind() == Kind::Array; }
    bool IsObject() const noexcept { return GetKind() == Kind::Object; }

    // The payload. To ask for another kind than the value's own is the caller's error and throws
    // std::bad_variant_access.
    // Lifetime: of this value.
    std::wstring_view AsString() const { return {Units() + mKeySize, std::get<std::size_t>(mPayload)}; }
    bool AsBool() const { return std::get<bool>(mPayload); }
    double AsNumber() const { return std::get<double>(mPayload); }
    JsonChildren AsArray() const;
    // One child per key, ordered by the keys' code units.
    JsonChildren AsObject() const;

    // Null when the object has no such member. Needs time for each member there is.
    const JsonValue* FindMember(std::wstring_view key) const;

    // Of a member.
    std::wstring_view Key() const noexcept { return {Units(), mKeySize}; }
    bool IsMember() const noexcept { return mIsMember; }

    // A tree of any depth can be walked by these alone, without a list of the containers that are open. Each is null
    // when there is no such value: a scalar has no children, and only of a last child the parent is known.
    const JsonValue* FirstChild() const noexcept;
    const JsonValue* NextSibling() const noexcept { return mIsLast ? nullptr : mNext; }
    const JsonValue* ParentOfLast() const noexcept { return mIsLast ? mNext : nullptr; }
    JsonValue* ParentOfLast() noexcept { return mIsLast ? mNext : nullptr; }

  private:
    struct Children {
        JsonValue* first = nullptr;
        JsonValue* last = nullptr;
    };
    struct Elements : Children {};
    struct Members : Children {};
    // In the order of Kind, so that the index is the kind. Of a string it is the size: the units lie behind the node.
    using Payload = std::variant<std::monostate, std::size_t, bool, double, Elements, Members>;

    // Of key and string, behind the node.
    struct TrailingUnits {
        std::size_t count;
    };
    static void* operator new(std::size_t size, TrailingUnits units);
    static void operator delete(void* block, TrailingUnits) noexcept { ::operator delete(block); }
    JsonValue(const Payload& payload, std::size_t keySize) noexcept : mKeySize(keySize), mPayload(payload) {}
    static std::unique_ptr<JsonValue> Make(const Payload& payload, const JsonText& key, const JsonText& text = {});

    // Throws std::bad_variant_access when the value is no container.
    Children& GetChildren();
    JsonValue* TakeFirstChild() noexcept;
    static JsonValue* TakeOrdered(JsonValue*& rest, std::size_t count) noexcept;
    static JsonValue* Merge(JsonValue* earlier, JsonValue* later) noexcept;

    // The key's, then the string's.
    const wchar_t* Units() const noexcept { return reinterpret_cast<const wchar_t*>(this + 1); }
    wchar_t* Units() noexcept { return reinterpret_cast<wchar_t*>(this + 1); }

    JsonValue* mNext = nullptr;  // the next sibling; of the last one the parent, of a root nothing
    std::size_t mKeySize;
    Payload mPayload;
    bool mIsLast = true;
    bool mIsMember = false;
    bool mIsDisordered = false;  // an object whose members are not in order
};

// The elements of an array or the members of an object, in their order.
class JsonChildren {
  public:
    class Iterator {
      public:
        using difference_type = std::ptrdiff_t;
        using value_type = JsonValue;

        Iterator() noexcept = default;
        explicit Iterator(const JsonValue* value) noexcept : mValue(value) {}
        const JsonValue& operator*() const noexcept { return *mValue; }
        Iterator& operator++() noexcept {
            mValue = mValue->NextSibling();
            return *this;
        }
        Iterator operator++(int) noexcept {
            const Iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const Iterator&) const noexcept = default;

      private:
        const JsonValue* mValue = nullptr;
    };

    explicit JsonChildren(const JsonValue* first) noexcept : mFirst(first) {}

    Iterator begin() const noexcept { return Iterator(mFirst); }
    Iterator end() const noexcept { return {}; }

  private:
    const JsonValue* mFirst;
};

inline JsonChildren JsonValue::AsArray() const { return JsonChildren(std::get<Elements>(mPayload).first); }
inline JsonChildren JsonValue::AsObject() const { return JsonChildren(std::get<Members>(mPayload).first); }
