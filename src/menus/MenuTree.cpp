#include "menus/MenuTree.h"

#include <string>

#include "documents/CurrentDocument.h"
#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
#include "host/MenuSuite.h"
#include "menus/MenuItemRegistry.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/Errors.h"
#include "support/ForeignExceptionGuard.h"
#include "support/Log.h"
#include "support/ResultCodes.h"

namespace {

constexpr const char* kTopLevelGroup = "Type Plugins1";

using MomentaryMenuSuite = MomentarySuite<AIMenuSuite>;

// What the PluginCore passes for one item.
struct ItemDescription {
    const char* id;
    const char* label;
    const char* itemText;  // may be null
    bool hasSubMenu;
    const char* parentID;  // may be null
};

// Whether the label is the keyboard-shortcut key of items that the host has already. Each of them is logged.
bool IsDuplicate(const MomentaryMenuSuite& menus, const std::string& label) {
    std::int32_t count = 0;
    if (menus->CountMenuItems(&count) != kNoErr) {
        return false;
    }
    bool duplicate = false;
    for (std::int32_t i = 0; i < count; ++i) {
        AIMenuItemHandle item = nullptr;
        const char* key = nullptr;
        if (menus->GetNthMenuItem(i, &item) == kNoErr &&
            menus->GetMenuItemKeyboardShortcutDictionaryKey(item, &key) == kNoErr && key != nullptr && label == key) {
            LogMessage(kLogNote, "Error: '%s' menu item already present.", label.c_str());
            duplicate = true;
        }
    }
    return duplicate;
}

// Shows in the log what the label would be as a key. The host gets no key, on purpose: items are
// known by their handles.
void LogLabelAsKey(std::string label) {
    for (std::size_t at = label.find('/'); at != std::string::npos; at = label.find('/')) {
        label[at] = '-';
        LogMessage(kLogNote, "Replaced char at position %d to make '%s'", static_cast<int>(at), label.c_str());
    }
}

// Adds the item and its sub-menu and records its identifier, under the null handle when the host refuses the item.
std::int32_t AddItem(const MomentaryMenuSuite& menus, const ItemDescription& description) {
    const bool hasText = description.itemText != nullptr && *description.itemText != '\0';
    const ai::UnicodeString text = hasText ? ai::UnicodeString(description.itemText) : ai::UnicodeString();
    const std::int32_t options = hasText ? kMenuItemWantsUpdateOption : kMenuItemIsSeparator;
    const char* const group = description.parentID != nullptr ? description.parentID : kTopLevelGroup;
    AIPlatformAddMenuItemDataUS data{group, text.Data()};
    AIMenuItemHandle item = nullptr;
    const std::int32_t result = menus->AddMenuItem(sGlobals->plugin, nullptr, &data, options, &item);
    MenuItemID(item) = description.id;
    // No closing parenthesis, and after the call: intentional, readers of the trace know the line so.
    LogMessage(kLogNote,
               "Calling AddMenuItem(SPPluginRef=0x%08x, itemKeyWithIllegalCharsRemoved='%s', menuData.groupName='%s', "
               "menuData.itemText='%s', options=0x%08x, pMenuItem=0x%08x",
               Low32(sGlobals->plugin), description.label, group, description.itemText, options, Low32(item));
    if (item != nullptr && description.hasSubMenu) {
        AIMenuGroupHandle subMenu = nullptr;
        // Without its sub-menu the item is still there; the host refuses the children.
        menus->AddMenuGroupAsSubMenu(description.label, 0, item, &subMenu);
    }
    return result;
}

std::int32_t AddItemUnlessDuplicate(const MomentaryMenuSuite& menus, const ItemDescription& description) {
    // Only at the top level: below it, labels may repeat those of other menus.
    if (description.parentID == nullptr && IsDuplicate(menus, description.label)) {
        return kDuplicateMenuItem;
    }
    LogLabelAsKey(description.label);
    return AddItem(menus, description);
}

}  // namespace

std::int32_t AddAllQuorvelMenuItems() {
    constexpr const char* kName = "AddAllQuorvelMenuItems";
    LogMessage(kLogEntry, "Entering %s()", kName);
    const std::string path = CurrentDocumentPath();
    const PCILoader& pluginCore = RequirePluginCore();
    ReplyBuffer<kMenusSize> menuJson;
    // Without an answer the buffer stays empty, and the PluginCore makes of that what it likes.
    pluginCore.pfGetMenus(path.c_str(), menuJson.Data(), menuJson.Size());

    MomentaryMenuSuite menus(kAIMenuSuite, kAIMenuSuiteVersion);
    menus.AcquireOrThrow();
    const std::int32_t result = pluginCore.pfCreateMenusFromJSONBuffer(menuJson.Data(), AddIllustratorMenu, &menus);
    LogMessage(kLogExit, "%s() returning %d", kName, result);
    return result;
}

std::int32_t AddIllustratorMenu(const char* id, const char* label, const char* itemText, std::uint8_t checked,
                                std::uint8_t enabled, std::uint8_t hasSubMenu, const char* parentID,
                                void* context) noexcept {
    constexpr const char* kName = "AddIllustratorMenu";
    LogMessage(kLogEntry, "Entering %s(id='%s', label='%s', checked=%d, enabled=%d, parentID=%s, 0x%08x)", kName, id,
               label, checked, enabled, parentID, Low32(context));
    std::int32_t result = kBadParameterErr;
    if (id != nullptr && label != nullptr && context != nullptr) {
        try {
            const auto& menus = *static_cast<const MomentaryMenuSuite*>(context);
            result = CallForeignCode([&] {
                return AddItemUnlessDuplicate(menus, {id, label, itemText, hasSubMenu != 0, parentID});
            });
        } catch (const ai::Error& error) {
            result = error.Code();
        } catch (...) {
            result = kBadParameterErr;
        }
    }
    LogMessage(kLogExit, "Exiting %s()", kName);
    return result;
}
