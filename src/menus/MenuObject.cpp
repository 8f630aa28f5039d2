#include "menus/MenuObject.h"

#include <cstddef>
#include <stdexcept>

#include "support/Log.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"

namespace {

// The first of these siblings that is an item; null when none is.
const JsonValue* FirstItem(const JsonValue* element) noexcept {
    while (element != nullptr && !element->IsObject()) {
        element = element->NextSibling();
    }
    return element;
}

}  // namespace

MenuObjects::MenuObjects(const JsonValue* root, std::wstring_view key) : mRoot(root), mKey(key) {
    if (root == nullptr) {
        return;
    }
    if (const JsonValue* const first = FirstItem(root->IsArray() ? root->FirstChild() : root)) {
        mPending.push_back(first);
    }
}

std::int32_t MenuObjects::GetMenuObject(const std::string& value, const JsonValue** out) {
    constexpr const char* kName = "GetMenuObject";
    LogMessage(kLogEntry, "Entering %s(..., %s, ...)", kName, value.c_str());
    const std::int32_t result = Search(value, out);
    LogMessage(kLogExit, "Exiting %s(..., %s, ...) with result %d", kName, value.c_str(), result);
    return result;
}

std::int32_t MenuObjects::Search(const std::string& value, const JsonValue** out) {
    if (mRoot != nullptr && !mRoot->IsObject() && !mRoot->IsArray()) {
        LogMessage(kLogNote, "The root element is not an object.");
        return kRootNotObject;
    }
    const JsonValue* const found = Find(value);
    if (found == nullptr) {
        return kLookupNotFound;
    }
    *out = found;
    return kNoErr;
}

const JsonValue* MenuObjects::Find(const std::string& value) {
    for (std::size_t i = 0;; ++i) {
        while (i == mVisited.size()) {
            if (mPending.empty()) {
                return nullptr;
            }
            VisitNext();
        }
        if (mVisited[i].text == value) {
            return mVisited[i].object;
        }
    }
}

// Adds the next item to those that were visited, unless its member is no string, and puts its children and the siblings
// behind it in its place. When anything throws, nothing has changed: the item stays the next one.
void MenuObjects::VisitNext() {
    const JsonValue& object = *mPending.back();
    const JsonValue& member = MenuObjectMember(object, mKey);
    const JsonValue& child = MenuObjectMember(object, L"child");
    const JsonValue* firstChild = nullptr;
    if (member.IsString()) {
        firstChild = child.IsArray() ? FirstItem(child.FirstChild()) : nullptr;
        // The room for the children, before the item counts as visited.
        mPending.push_back(nullptr);
        mPending.pop_back();
        mVisited.push_back({&object, Utf8FromUtf16(member.AsString())});
    }
    mPending.pop_back();
    if (const JsonValue* const sibling = FirstItem(object.NextSibling())) {
        mPending.push_back(sibling);
    }
    if (firstChild != nullptr) {
        mPending.push_back(firstChild);
    }
}

const JsonValue& MenuObjectMember(const JsonValue& object, std::wstring_view key) {
    const JsonValue* const member = object.FindMember(key);
    if (member == nullptr) {
        throw std::out_of_range("invalid map<K, T> key");
    }
    return *member;
}
