// The search in the menu description, beside one that calls itself for each item, as the rules are told.
#include <utf8cpp/utf8.h>

#include <cstdint>
#include <memory>
#include <stdexcept>

#include "fuzz/reference/Lines.h"
#include "fuzz/reference/Text.h"
#include "fuzz/Targets.h"
#include "json/JsonParser.h"
#include "menus/MenuObject.h"
#include "support/ResultCodes.h"

namespace {

enum class Ending { kReturned, kMemberMissing, kNotUtf16 };

struct Outcome {
    Ending ending = Ending::kReturned;
    std::int32_t result = kLookupNotFound;
    const JsonValue* found = nullptr;
};

// Deeper descriptions are searched, but have no reference: that one lies on the call stack.
constexpr int kReferenceDepth = 2000;

class ReferenceSearch {
  public:
    ReferenceSearch(std::wstring key, std::string value) : mKey(std::move(key)), mValue(std::move(value)) {}

    Outcome OfRoot(const JsonValue* root) const {
        if (root == nullptr) {
            return {};
        }
        if (root->IsObject()) {
            return OfItem(*root);
        }
        return root->IsArray() ? OfItems(*root) : Outcome{Ending::kReturned, kRootNotObject, nullptr};
    }

  private:
    Outcome OfItem(const JsonValue& item) const {
        const JsonValue* const member = item.FindMember(mKey);
        const JsonValue* const child = item.FindMember(L"child");
        if (member == nullptr || child == nullptr) {
            return {Ending::kMemberMissing, 0, nullptr};
        }
        if (!member->IsString()) {
            return {};
        }
        const std::optional<std::string> text = ReferenceUtf8(member->AsString());
        if (!text) {
            return {Ending::kNotUtf16, 0, nullptr};
        }
        if (*text == mValue) {
            return {Ending::kReturned, kNoErr, &item};
        }
        return child->IsArray() ? OfItems(*child) : Outcome{};
    }

    Outcome OfItems(const JsonValue& items) const {
        for (const JsonValue& item : items.AsArray()) {
            if (!item.IsObject()) {
                continue;
            }
            const Outcome outcome = OfItem(item);
            if (outcome.ending != Ending::kReturned || outcome.result == kNoErr) {
                return outcome;
            }
        }
        return {};
    }

    std::wstring mKey;
    std::string mValue;
};

Outcome Search(MenuObjects& objects, const std::string& value) {
    Outcome outcome;
    try {
        outcome.result = objects.GetMenuObject(value, &outcome.found);
    } catch (const std::out_of_range& exception) {
        Require(std::string_view(exception.what()) == "invalid map<K, T> key", "menu: the exception's text");
        outcome.ending = Ending::kMemberMissing;
        outcome.result = 0;
    } catch (const utf8::invalid_utf16&) {
        outcome.ending = Ending::kNotUtf16;
        outcome.result = 0;
    }
    return outcome;
}

std::size_t BracketsOf(std::string_view text) {
    std::size_t count = 0;
    for (const char c : text) {
        count += c == '[' || c == '{' ? 1 : 0;
    }
    return count;
}

}  // namespace

void FuzzMenu(std::string_view bytes) {
    const std::wstring key = TakeLine(bytes) == "title" ? L"title" : L"id";
    const std::string value = TakeLine(bytes);
    const std::optional<std::wstring> decoded = ReferenceUtf16(bytes);
    const std::unique_ptr<JsonValue> root = ParseJson(decoded ? *decoded : Widened(bytes));

    MenuObjects objects(root.get(), key);
    const bool hasReference = BracketsOf(bytes) <= kReferenceDepth;
    // A search knows what those before it have visited: none, all up to the value, and all that can be.
    for (const std::string& sought : {value, value + "?", value}) {
        const Outcome outcome = Search(objects, sought);
        Require((outcome.found != nullptr) == (outcome.ending == Ending::kReturned && outcome.result == kNoErr),
                "menu: an item is given exactly when one is found");
        if (!hasReference) {
            continue;
        }
        const Outcome expected = ReferenceSearch(key, sought).OfRoot(root.get());
        Require(outcome.ending == expected.ending, "menu: how the search ends");
        Require(outcome.result == expected.result, "menu: the result");
        Require(outcome.found == expected.found, "menu: the item");
    }
}
