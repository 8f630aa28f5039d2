// Stands between a library and the plug-in's menu callback: checks each item, and passes it on.
//
// Lifetime: for good; a library may call back when it must not.
#pragma once

#include <windows.h>

#include <atomic>
#include <chrono>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "plugincore/PluginCore.h"

namespace simhost::contract {

class CallbackGuard {
  public:
    // Never freed: a library may call back when it must not.
    static CallbackGuard* Lend(PluginCoreMenuCallback callback, void* context, int call);

    // What the library is given. The context is the guard itself; any other is a finding.
    static std::int32_t OnItem(const char* id, const char* label, const char* itemText, std::uint8_t checked,
                               std::uint8_t enabled, std::uint8_t hasSubMenu, const char* parentID, void* context);

    // From now on a call is one too late.
    void Close() { mIsOpen = false; }
    // Each item's identifier and what the plug-in answered, as in "activate -> 0".
    const std::vector<std::string>& Items() const { return mItems; }
    // All that each item was passed with, for the record; null pointers are null.
    const nlohmann::ordered_json& ItemsInFull() const { return mItemsInFull; }
    // How long items took that were passed on, and their checks: the library's entry has only waited for them.
    std::chrono::steady_clock::duration TimeOfCaller() const { return mTimeOfCaller; }

  private:
    CallbackGuard(PluginCoreMenuCallback callback, void* context, int call)
        : mCallback(callback), mContext(context), mCall(call) {}

    struct Item {
        const char* id;
        const char* label;
        const char* itemText;
        std::uint8_t checked, enabled, hasSubMenu;
        const char* parentID;
    };
    static CallbackGuard* Find(const void* context, const Item& item);
    // Whether the plug-in may be called.
    bool IsInTime(const Item& item) const;
    void Check(const Item& item);
    void CheckTexts(const Item& item) const;
    void CheckDuplicates(const Item& item);
    std::int32_t PassOn(const Item& item);

    PluginCoreMenuCallback mCallback;
    void* mContext;
    int mCall;
    DWORD mThread = GetCurrentThreadId();
    std::atomic<bool> mIsOpen = true;  // items may come on any thread
    std::set<std::string> mIDs;
    std::set<std::string> mTopLevel;  // labels of the items there
    std::set<std::string> mSubMenus;  // labels of the items that have one
    std::vector<std::string> mItems;
    nlohmann::ordered_json mItemsInFull = nlohmann::ordered_json::array();
    std::chrono::steady_clock::duration mTimeOfCaller{};
};

}  // namespace simhost::contract
