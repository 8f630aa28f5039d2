#include "menus/FindFontCommand.h"

#include <string_view>

#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
#include "host/MenuSuite.h"
#include "host/SPSuites.h"
#include "support/ForeignExceptionGuard.h"
#include "support/Log.h"
#include "support/ResultCodes.h"

namespace {

constexpr const char* kOwnerName = "TextFindFont";
constexpr const char* kShortcutKey = "Adobe Illustrator Find Font Menu Item";

using MomentaryMenuSuite = MomentarySuite<AIMenuSuite>;

// A menu item with the plug-in that owns it.
struct OwnedItem {
    SPPluginRef owner = nullptr;
    AIMenuItemHandle item = nullptr;
};

// Before start-up and after shut-down there is nowhere to remember it.
void Remember(const OwnedItem& found) {
    if (sGlobals != nullptr) {
        sGlobals->findFontOwner = found.owner;
        sGlobals->findFontItem = found.item;
    }
}

bool IsKnown() {
    return sGlobals != nullptr && sGlobals->findFontOwner != nullptr && sGlobals->findFontItem != nullptr;
}

// Whether the item has the command's shortcut key; such an item is logged.
bool HasShortcutKey(const MomentaryMenuSuite& menus, std::int32_t index, const OwnedItem& candidate) {
    ai::UnicodeString text;
    const std::int32_t textResult = menus->GetItemText(candidate.item, text.Data());
    const char* key = nullptr;
    // An item that has no key leaves it null.
    menus->GetMenuItemKeyboardShortcutDictionaryKey(candidate.item, &key);
    if (textResult != kNoErr || key == nullptr || std::string_view(key) != kShortcutKey) {
        return false;
    }
    LogMessage(kLogNote,
               "GetItemText for item %d (menuHandle 0x%08x; menuPluginRef 0x%08x) is '%s'; "
               "GetMenuItemKeyboardShortcutDictionaryKey() is '%s'",
               index, Low32(candidate.item), Low32(candidate.owner), text.ToUtf8().c_str(), key);
    return true;
}

// The owner decides, not the key: the owner's first item counts. Only when it has none, the last item with the
// command's key counts, regardless of its owner.
OwnedItem FindItem(const MomentaryMenuSuite& menus, SPPluginRef owner) {
    std::int32_t count = 0;
    if (menus->CountMenuItems(&count) != kNoErr) {
        count = 0;
    }
    LogMessage(kLogNote, "Examining %d menu items in search of '%s' (menuPluginRef 0x%08x)", count, kShortcutKey,
               Low32(owner));
    OwnedItem fallback;
    for (std::int32_t i = 0; i < count; ++i) {
        OwnedItem candidate;
        menus->GetNthMenuItem(i, &candidate.item);
        if (candidate.item == nullptr) {
            continue;
        }
        const bool ownerIsKnown = menus->GetMenuItemPlugin(candidate.item, &candidate.owner) == kNoErr;
        if (!ownerIsKnown) {
            // Whatever a failing host has written there must not be sent a message.
            candidate.owner = nullptr;
        }
        if (HasShortcutKey(menus, i, candidate)) {
            fallback = candidate;
        }
        if (ownerIsKnown && candidate.owner == owner) {
            return candidate;
        }
    }
    LogMessage(kLogNote, "WARNING:  never found menuPluginRef 0x%08x", Low32(owner));
    return fallback;
}

void FindOwnerAndItem() {
    MomentarySuite<SPPluginsSuite> plugins(kSPPluginsSuite, kSPPluginsSuiteVersion);
    MomentaryMenuSuite menus(kAIMenuSuite, kAIMenuSuiteVersion);
    plugins.AcquireOrThrow();
    menus.AcquireOrThrow();
    SPPluginRef owner = nullptr;
    if (plugins->GetNamedPlugin(kOwnerName, &owner) == kNoErr && owner != nullptr) {
        // Known already while the items are searched: a host that fails there leaves an owner without an item.
        Remember({owner, nullptr});
        Remember(FindItem(menus, owner));
    }
}

std::int32_t SendMenuMessage(const MomentarySuite<SPInterfaceSuite>& interfaces) {
    const SPPluginRef owner = sGlobals->findFontOwner;
    AIMenuMessage message{};
    message.menuItem = sGlobals->findFontItem;
    // A message that the host has not completed would crash its receiver.
    if (const std::int32_t result = interfaces->SetupMessageData(owner, &message.d); result != kNoErr) {
        return result;
    }
    SPErr answer = kNoErr;
    // The receiver is code of another compiler.
    const std::int32_t result = CallForeignCode(
        [&] { return interfaces->SendMessage(owner, kCallerAIMenu, kSelectorAIGoMenuItem, &message, &answer); });
    return result != kNoErr ? result : answer;
}

void ChooseItem() {
    MomentarySuite<SPInterfaceSuite> interfaces(kSPInterfaceSuite, kSPInterfaceSuiteVersion);
    try {
        interfaces.AcquireOrThrow();
    } catch (std::int32_t) {
        LogMessage(kLogNote, "ERROR:  could not acquire '%s'", kSPInterfaceSuite);
        return;
    }
    if (const std::int32_t result = SendMenuMessage(interfaces); result != kNoErr) {
        LogMessage(kLogNote, "Error %d on attempt to display find-font dialog", result);
    }
}

}  // namespace

void CacheFindFontMenuItem() {
    LogMessage(kLogEntry, "Entering %s()", "CacheFindFontMenuItem");
    Remember({});
    try {
        FindOwnerAndItem();
    } catch (...) {
        // What the host refuses leaves the command unknown; the next request searches again.
    }
}

void DisplayFindFontDialog() {
    constexpr const char* kName = "DisplayFindFontDialog";
    LogMessage(kLogEntry, "Entering %s", kName);
    if (!IsKnown()) {
        CacheFindFontMenuItem();
    }
    if (IsKnown()) {
        try {
            ChooseItem();
        } catch (...) {
            // Without the dialog everything is as it was.
        }
    }
    LogMessage(kLogExit, "Exiting %s", kName);
}
