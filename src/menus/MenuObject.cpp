#include "menus/MenuObject.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

#include "support/Log.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"

namespace {

// The items still to be visited, the next one at the end.
using Pending = std::vector<const JsonValue*>;

// Elements that are no items are passed over.
void AddItems(const JsonValue& array, Pending& pending) {
    const JsonValue::Array& elements = array.AsArray();
    std::for_each(elements.rbegin(), elements.rend(), [&](const auto& element) {
        if (element->IsObject()) {
            pending.push_back(element.get());
        }
    });
}

std::int32_t Search(Pending pending, std::wstring_view key, const std::string& value, const JsonValue** out) {
    while (!pending.empty()) {
        const JsonValue& item = *pending.back();
        pending.pop_back();
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
            AddItems(child, pending);
        }
    }
    return kLookupNotFound;
}

std::int32_t SearchRoot(const JsonValue* root, std::wstring_view key, const std::string& value, const JsonValue** out) {
    if (root == nullptr) {
        return kLookupNotFound;
    }
    Pending pending;
    if (root->IsObject()) {
        pending.push_back(root);
    } else if (root->IsArray()) {
        AddItems(*root, pending);
    } else {
        LogMessage(kLogNote, "The root element is not an object.");
        return kRootNotObject;
    }
    return Search(std::move(pending), key, value, out);
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
    const JsonValue::Object& members = object.AsObject();
    const auto member = members.find(std::wstring(key));
    if (member == members.end()) {
        throw std::out_of_range("invalid map<K, T> key");
    }
    return *member->second;
}
