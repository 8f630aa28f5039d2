#include "simhost/contract/CallbackGuard.h"

#include <algorithm>
#include <mutex>

#include "doubles/common/CallRecord.h"
#include "doubles/common/Thread.h"
#include "simhost/checks/HostStateWatch.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/TextChecks.h"

namespace simhost::contract {

namespace {

constexpr const char* kEntry = "CreateMenusFromJSONBuffer";

std::string Name(const char* text) { return text == nullptr ? "null" : "\"" + std::string(text) + "\""; }

// All that were ever lent, in their order. Items may come on any thread.
Mutex sMutex;
std::vector<CallbackGuard*>& Guards() {
    static auto* const sGuards = new std::vector<CallbackGuard*>;
    return *sGuards;
}

}  // namespace

CallbackGuard* CallbackGuard::Lend(PluginCoreMenuCallback callback, void* context, int call) {
    const std::lock_guard lock(sMutex);
    Guards().push_back(new CallbackGuard(callback, context, call));
    return Guards().back();
}

// Null when the context is none that was lent. The plug-in would go where it points to.
CallbackGuard* CallbackGuard::Find(const void* context, const Item& item) {
    const std::lock_guard lock(sMutex);
    Book().Tried(ClauseId::kCallbackContext);
    const auto found = std::find(Guards().begin(), Guards().end(), context);
    if (found != Guards().end()) {
        return *found;
    }
    Book().Broken({ClauseId::kCallbackContext, kEntry, Guards().back()->mCall,
                   "the item " + Name(item.id) + " came with " +
                       (context == nullptr ? "a null context" : "a context that is not the one of the call")});
    return nullptr;
}

std::int32_t CallbackGuard::OnItem(const char* id, const char* label, const char* itemText, std::uint8_t checked,
                                   std::uint8_t enabled, std::uint8_t hasSubMenu, const char* parentID, void* context) {
    const Item item{id, label, itemText, checked, enabled, hasSubMenu, parentID};
    CallbackGuard* const guard = Find(context, item);
    if (guard == nullptr || !guard->IsInTime(item)) {
        return kPluginCoreBadParameter;
    }
    const auto began = std::chrono::steady_clock::now();
    guard->Check(item);
    const std::int32_t answer = guard->PassOn(item);
    guard->mTimeOfCaller += std::chrono::steady_clock::now() - began;
    return answer;
}

bool CallbackGuard::IsInTime(const Item& item) const {
    Book().Tried(ClauseId::kCallbackThread);
    Book().Tried(ClauseId::kCallbackLate);
    if (!mIsOpen) {
        Book().Broken({ClauseId::kCallbackLate, kEntry, mCall,
                       "the item " + Name(item.id) + " came after the entry had returned"});
        return false;
    }
    if (GetCurrentThreadId() != mThread) {
        Book().Broken(
            {ClauseId::kCallbackThread, kEntry, mCall, "the item " + Name(item.id) + " came on another thread"});
        return false;
    }
    return true;
}

void CallbackGuard::CheckTexts(const Item& item) const {
    Book().Tried(ClauseId::kCallbackText);
    const auto broken = [&](const std::string& what) { Book().Broken({ClauseId::kCallbackText, kEntry, mCall, what}); };
    if (item.id == nullptr || item.label == nullptr) {
        broken("an item without text: id " + Name(item.id) + ", label " + Name(item.label));
    }
    for (const char* const text : {item.id, item.label, item.itemText, item.parentID}) {
        if (text != nullptr && !IsUtf8(text)) {
            broken("the text " + Printable(text) + " is not UTF-8");
        }
    }
}

void CallbackGuard::Check(const Item& item) {
    CheckTexts(item);
    Book().Tried(ClauseId::kCallbackFlag);
    if (item.checked > 1 || item.enabled > 1 || item.hasSubMenu > 1) {
        Book().Broken({ClauseId::kCallbackFlag, kEntry, mCall,
                       "the item " + Name(item.id) + " has the flags " + std::to_string(item.checked) + ", " +
                           std::to_string(item.enabled) + ", " + std::to_string(item.hasSubMenu)});
    }
    Book().Tried(ClauseId::kCallbackParent);
    if (item.parentID != nullptr && !mSubMenus.contains(item.parentID)) {
        Book().Broken({ClauseId::kCallbackParent, kEntry, mCall,
                       "the item " + Name(item.id) + " names the parent " + Name(item.parentID) +
                           ", and no item before it has that label and a sub-menu"});
    }
    CheckDuplicates(item);
}

void CallbackGuard::CheckDuplicates(const Item& item) {
    Book().Tried(ClauseId::kCallbackDuplicate);
    const auto isKnown = [](std::set<std::string>& known, const char* text) {
        return text != nullptr && !known.insert(text).second;
    };
    const auto tell = [&](const std::string& what, const char* text) {
        Book().Broken({ClauseId::kCallbackDuplicate, kEntry, mCall, what + " " + Name(text) + " came twice"});
    };
    if (isKnown(mIDs, item.id)) {
        tell("the id", item.id);
    }
    const bool isSeparator = item.itemText == nullptr || *item.itemText == '\0';
    const bool isSubMenuKnown = item.hasSubMenu != 0 && isKnown(mSubMenus, item.label);
    const bool isItemKnown = item.parentID == nullptr && !isSeparator && isKnown(mTopLevel, item.label);
    // One label is told once.
    if (isSubMenuKnown) {
        tell("the label of a sub-menu", item.label);
    } else if (isItemKnown) {
        tell("the label of an item at the top level", item.label);
    }
}

std::int32_t CallbackGuard::PassOn(const Item& item) {
    // The caller's turn within the library's.
    HostStateWatch state;
    const std::int32_t answer = mCallback(item.id, item.label, item.itemText, item.checked, item.enabled,
                                          item.hasSubMenu, item.parentID, mContext);
    state.Check("the callback of " + std::string(kEntry) + " for the item " + Name(item.id));
    const auto text = [](const char* given) {
        return given == nullptr ? nlohmann::ordered_json() : nlohmann::ordered_json(given);
    };
    mItemsInFull.push_back({{"id", text(item.id)},
                            {"label", text(item.label)},
                            {"text", text(item.itemText)},
                            {"checked", item.checked},
                            {"enabled", item.enabled},
                            {"has_sub_menu", item.hasSubMenu},
                            {"parent", text(item.parentID)},
                            {"answer", answer}});
    mItems.push_back((item.id == nullptr ? "" : item.id) + (" -> " + doubles::AnswerInWords(answer)));
    return answer;
}

}  // namespace simhost::contract
