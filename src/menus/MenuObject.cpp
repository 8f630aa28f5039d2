#include "menus/MenuObject.h"

#include <stdexcept>
#include <vector>

#include "support/Log.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"

namespace {

// The items still to be visited: each stands for its siblings behind it as well, the innermost ones at the end.
using Pending = std::vector<const JsonValue*>;

// The first of these siblings that is an item; elements that are none are passed over.
const JsonValue* FirstItem(const JsonValue* element) noexcept {
    while (element != nullptr && !element->IsObject()) {
        element = element->NextSibling();
    }
    return element;
}

void AddItems(const JsonValue* first, Pending& pending) {
    if (const JsonValue* const item = FirstItem(first)) {
        pending.push_back(item);
    }
}

const JsonValue& TakeItem(Pending& pending) noexcept {
    const JsonValue& item = *pending.back();
    pending.pop_back();
    return item;
}

std::int32_t Search(const JsonValue* first, std::wstring_view key, const std::string& value, const JsonValue** out) {
    Pending pending;
    AddItems(first, pending);
    while (!pending.empty()) {
        const JsonValue& item = TakeItem(pending);
        AddItems(item.NextSibling(), pending);
        const JsonValue& member = MenuObjectMember(item, key);
        const JsonValue& child = MenuObjectMember(item, L"child");
        if (!member.IsString()) {
            continue;
        }
        if (Utf8FromUtf16(member.AsString()) == value) {
            *out = &item;
            return kNoErr;
        }
        if (child.IsArray()) {
            AddItems(child.FirstChild(), pending);
        }
    }
    return kLookupNotFound;
}

std::int32_t SearchRoot(const JsonValue* root, std::wstring_view key, const std::string& value, const JsonValue** out) {
    if (root == nullptr) {
        return kLookupNotFound;
    }
    if (!root->IsObject() && !root->IsArray()) {
        LogMessage(kLogNote, "The root element is not an object.");
        return kRootNotObject;
    }
    return Search(root->IsObject() ? root : root->FirstChild(), key, value, out);
}

}  // namespace

std::int32_t GetMenuObject(const JsonValue* root, std::wstring_view key, const std::string& value,
                           const JsonValue** out) {
    constexpr const char* kName = "GetMenuObject";
    LogMessage(kLogEntry, "Entering %s(..., %s, ...)", kName, value.c_str());
    const std::int32_t result = SearchRoot(root, key, value, out);
    LogMessage(kLogExit, "Exiting %s(..., %s, ...) with result %d", kName, value.c_str(), result);
    return result;
}

const JsonValue& MenuObjectMember(const JsonValue& object, std::wstring_view key) {
    const JsonValue* const member = object.FindMember(key);
    if (member == nullptr) {
        throw std::out_of_range("invalid map<K, T> key");
    }
    return *member;
}
