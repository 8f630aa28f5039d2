#include "simhost/contract/CallbackGuard.h"

#include <cstdio>

#include "simhost/contract/ContractBook.h"
#include "simhost/contract/TextChecks.h"

namespace simhost::contract {

namespace {

constexpr const char* kEntry = "CreateMenusFromJSONBuffer";

std::string Name(const char* text) { return text == nullptr ? "null" : "\"" + std::string(text) + "\""; }

std::string AnswerInWords(std::int32_t answer) {
    char text[16];
    // Codes are readable in hexadecimal only.
    std::snprintf(text, sizeof text, answer == 0 ? "%d" : "0x%08X", static_cast<unsigned>(answer));
    return text;
}

}  // namespace

std::int32_t CallbackGuard::OnItem(const char* id, const char* label, const char* itemText, std::uint8_t checked,
                                   std::uint8_t enabled, std::uint8_t hasSubMenu, const char* parentID, void* context) {
    auto& guard = *static_cast<CallbackGuard*>(context);
    const Item item{id, label, itemText, checked, enabled, hasSubMenu, parentID};
    if (!guard.IsInTime(item)) {
        return kPluginCoreBadParameter;
    }
    const auto began = std::chrono::steady_clock::now();
    guard.Check(item);
    const std::int32_t answer = guard.PassOn(item);
    guard.mTimeOfCaller += std::chrono::steady_clock::now() - began;
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
    Book().Tried(ClauseId::kCallbackDuplicate);
    if (item.id != nullptr && !mIDs.insert(item.id).second) {
        Book().Broken({ClauseId::kCallbackDuplicate, kEntry, mCall, "the id " + Name(item.id) + " came twice"});
    }
    if (item.label != nullptr && item.hasSubMenu != 0) {
        mSubMenus.insert(item.label);
    }
}

std::int32_t CallbackGuard::PassOn(const Item& item) {
    const std::int32_t answer = mCallback(item.id, item.label, item.itemText, item.checked, item.enabled,
                                          item.hasSubMenu, item.parentID, mContext);
    mItems.push_back((item.id == nullptr ? "" : item.id) + (" -> " + AnswerInWords(answer)));
    return answer;
}

}  // namespace simhost::contract
