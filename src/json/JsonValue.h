// One node of a JSON tree.
// Thread: any, one at a time.
#pragma once

#include <concepts>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

// Texts are sequences of 16-bit code units held in wide strings: surrogate pairs are two units like any other.
class JsonValue {
  public:
    enum class Kind { Null = 0, String = 1, Bool = 2, Number = 3, Array = 4, Object = 5 };

    using Array = std::vector<std::unique_ptr<JsonValue>>;
    // One value per key, ordered by the keys' code units.
    using Object = std::map<std::wstring, std::unique_ptr<JsonValue>>;

    // Each constructor fixes the kind for good. An array or an object owns the values handed in; none may be null.
    JsonValue() noexcept;
    explicit JsonValue(std::wstring text) noexcept;
    // Exactly bool: a pointer or a string literal would silently become "true" otherwise.
    explicit JsonValue(std::same_as<bool> auto truth) noexcept : mPayload(std::in_place_type<bool>, truth) {}
    explicit JsonValue(double number) noexcept;
    explicit JsonValue(Array elements);
    explicit JsonValue(Object members);

    JsonValue(const JsonValue&) = delete;
    JsonValue& operator=(const JsonValue&) = delete;

    // Deletes every descendant, at any depth on a stack of fixed size, and allocates nothing.
    ~JsonValue();

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
    const std::wstring& AsString() const { return std::get<std::wstring>(mPayload); }
    bool AsBool() const { return std::get<bool>(mPayload); }
    double AsNumber() const { return std::get<double>(mPayload); }
    const Array& AsArray() const { return std::get<Array>(mPayload); }
    const Object& AsObject() const { return std::get<Object>(mPayload); }

  private:
    using Owner = std::unique_ptr<JsonValue>;

    void MoveChildrenTo(Owner& doomed) noexcept;

    // In the order of Kind, so that the index is the kind.
    std::variant<std::monostate, std::wstring, bool, double, Array, Object> mPayload;
    // Null until the value waits for its deletion; then the value that is deleted after it.
    Owner mNextDoomed;
};
