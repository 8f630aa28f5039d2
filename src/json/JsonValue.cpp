#include "json/JsonValue.h"

#include <compare>
#include <new>
#include <utility>

void* JsonValue::operator new(std::size_t size, TrailingUnits units) {
    return ::operator new(size + units.count * sizeof(wchar_t));
}

std::unique_ptr<JsonValue> JsonValue::Make(const Payload& payload, const JsonText& key, const JsonText& text) {
    std::unique_ptr<JsonValue> value(new (TrailingUnits{key.Size() + text.Size()}) JsonValue(payload, key.Size()));
    key.CopyTo(value->Units());
    text.CopyTo(value->Units() + key.Size());
    return value;
}

std::unique_ptr<JsonValue> JsonValue::MakeNull(const JsonText& key) { return Make(Payload(), key); }

std::unique_ptr<JsonValue> JsonValue::MakeString(const JsonText& text, const JsonText& key) {
    return Make(Payload(std::in_place_type<std::size_t>, text.Size()), key, text);
}

std::unique_ptr<JsonValue> JsonValue::MakeNumber(double number, const JsonText& key) { return Make(number, key); }

std::unique_ptr<JsonValue> JsonValue::MakeArray(const JsonText& key) { return Make(Elements(), key); }

std::unique_ptr<JsonValue> JsonValue::MakeObject(const JsonText& key) { return Make(Members(), key); }

// From the bottom up: each container loses its children before it is met again, behind the last of them.
JsonValue::~JsonValue() {
    JsonValue* value = TakeFirstChild();
    while (value != nullptr && value != this) {
        if (JsonValue* const child = value->TakeFirstChild()) {
            value = child;
        } else {
            delete std::exchange(value, value->mNext);
        }
    }
}

JsonValue& JsonValue::Append(std::unique_ptr<JsonValue> child) {
    JsonValue& appended = AppendUnordered(std::move(child));
    OrderMembers();
    return appended;
}

JsonValue& JsonValue::AppendUnordered(std::unique_ptr<JsonValue> child) {
    Children& children = GetChildren();
    JsonValue& appended = *child.release();
    appended.mNext = this;
    appended.mIsMember = IsObject();
    if (children.last == nullptr) {
        children.first = &appended;
    } else {
        children.last->mNext = &appended;
        children.last->mIsLast = false;
        mIsDisordered |= appended.mIsMember && appended.Key() <= children.last->Key();
    }
    children.last = &appended;
    return appended;
}

void JsonValue::OrderMembers() noexcept {
    auto* const members = std::get_if<Members>(&mPayload);
    if (members == nullptr || !std::exchange(mIsDisordered, false)) {
        return;
    }
    std::size_t count = 0;
    for (const JsonValue* member = members->first; member != nullptr; member = member->NextSibling()) {
        ++count;
    }
    JsonValue* rest = members->first;
    members->first = TakeOrdered(rest, count);
    for (members->last = members->first; members->last->mNext != nullptr; members->last = members->last->mNext) {
        members->last->mIsLast = false;
    }
    members->last->mIsLast = true;
    members->last->mNext = this;
}

// Takes the first `count` of a chain of members and returns them as an ordered chain of their own, which ends with
// null. As deep as the logarithm of the number.
JsonValue* JsonValue::TakeOrdered(JsonValue*& rest, std::size_t count) noexcept {
    if (count == 1) {
        JsonValue* const member = rest;
        rest = std::exchange(member->mNext, nullptr);
        return member;
    }
    JsonValue* const earlier = TakeOrdered(rest, count / 2);
    JsonValue* const later = TakeOrdered(rest, count - count / 2);
    return Merge(earlier, later);
}

JsonValue* JsonValue::Merge(JsonValue* earlier, JsonValue* later) noexcept {
    JsonValue* merged = nullptr;
    JsonValue** end = &merged;
    while (earlier != nullptr && later != nullptr) {
        const auto order = earlier->Key() <=> later->Key();
        if (std::is_eq(order)) {
            delete std::exchange(earlier, earlier->mNext);
            continue;
        }
        JsonValue*& smaller = std::is_lt(order) ? earlier : later;
        *end = smaller;
        end = &smaller->mNext;
        smaller = smaller->mNext;
    }
    *end = earlier != nullptr ? earlier : later;
    return merged;
}

const JsonValue* JsonValue::FindMember(std::wstring_view key) const {
    for (const JsonValue& member : AsObject()) {
        if (member.Key() == key) {
            return &member;
        }
    }
    return nullptr;
}

const JsonValue* JsonValue::FirstChild() const noexcept {
    if (const auto* const members = std::get_if<Members>(&mPayload)) {
        return members->first;
    }
    const auto* const elements = std::get_if<Elements>(&mPayload);
    return elements != nullptr ? elements->first : nullptr;
}

JsonValue::Children& JsonValue::GetChildren() {
    return IsObject() ? std::get<Members>(mPayload) : static_cast<Children&>(std::get<Elements>(mPayload));
}

// Null when there are none, or none any more.
JsonValue* JsonValue::TakeFirstChild() noexcept {
    return FirstChild() != nullptr ? std::exchange(GetChildren().first, nullptr) : nullptr;
}
