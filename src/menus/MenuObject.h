// Searching the PluginCore's menu description. Needs neither host nor PluginCore.
//
// The root is one item or an array of items. An item is an object with the members "id" and "title" (strings),
// "enabled" and "checked" (booleans) and "child" (an array of items; anything else stands for none).
// Thread: any, one at a time.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "json/JsonValue.h"

// The items of one description by their member `key`. A menu is searched once for each of its items, so every item is
// looked at once, when a search first comes to it, and found in a list from then on.
class MenuObjects {
  public:
    // A null root is a text that did not parse. Both have to live as long as this object; it starts no search.
    MenuObjects(const JsonValue* root, std::wstring_view key);

    // Finds the first item, each one before its children, whose member is the string `value` (UTF-8); stores it in
    // `out`, where it stays the root's, and returns 0. Else leaves `out` alone and returns kLookupNotFound, also for a
    // null root, or kRootNotObject for a root that is neither object nor array. An item whose member is no string is
    // passed over with its children. Throws std::out_of_range when an item that it meets lacks the member or "child",
    // and what MenuObjectMember and Utf8FromUtf16 throw: so does then each search that comes as far.
    std::int32_t GetMenuObject(const std::string& value, const JsonValue** out);

  private:
    struct Item {
        const JsonValue* object;
        std::string text;
    };

    std::int32_t Search(const std::string& value, const JsonValue** out);
    const JsonValue* Find(const std::string& value);
    void VisitNext();

    const JsonValue* mRoot;  // not owned; may be null
    std::wstring_view mKey;
    std::vector<Item> mVisited;  // in the order of the search
    // Not visited yet, the next one at the end. Each stands for its siblings behind it as well.
    std::vector<const JsonValue*> mPending;
};

// A member of an item. Throws std::out_of_range when the item lacks it: the description is then not worth trusting.
const JsonValue& MenuObjectMember(const JsonValue& object, std::wstring_view key);
