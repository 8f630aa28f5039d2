#include "menus/MenuMessages.h"

#include <utf8cpp/utf8.h>

#include <memory>
#include <string>
#include <string_view>

#include "documents/CurrentDocument.h"
#include "documents/FontUsageScan.h"
#include "frame/base/SuiteOperations.h"
#include "host/MenuSuite.h"
#include "json/JsonParser.h"
#include "menus/MenuItemRegistry.h"
#include "menus/MenuObject.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/Log.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"
#include "support/UntilUnloaded.h"

namespace {

using MomentaryMenuSuite = MomentarySuite<AIMenuSuite>;

// The description that the last refresh read; empty before the first one.
const UntilUnloaded<std::string> sMenuJsonCache;

// Null for a text that is no JSON or no UTF-8.
std::unique_ptr<JsonValue> ParseMenuJson(std::string_view json) {
    try {
        return ParseJson(Utf16FromUtf8(json));
    } catch (const utf8::exception&) {
        return nullptr;
    }
}

// A description, ready to be searched.
struct MenuDescription {
    explicit MenuDescription(std::string_view json) : text(json), root(ParseMenuJson(json)) {}

    std::string text;
    std::unique_ptr<JsonValue> root;
    MenuObjects byTitle{root.get(), L"title"};
    MenuObjects byID{root.get(), L"id"};
};

// Kept, because the host asks once for each item when a menu opens, and the PluginCore mostly answers the same.
const UntilUnloaded<std::unique_ptr<MenuDescription>> sDescription;

// Lifetime: to the next call. The dispatch refuses a message that comes while another is handled, so none comes
// between.
MenuDescription& DescriptionOf(std::string_view json) {
    if (*sDescription == nullptr || (*sDescription)->text != json) {
        *sDescription = std::make_unique<MenuDescription>(json);
    }
    return **sDescription;
}

// An item that the host refused when it was added has no handle, and nothing to be marked.
void SetMarks(const MomentaryMenuSuite& menus, AIMenuItemHandle item, const JsonValue& object) {
    const bool enabled = MenuObjectMember(object, L"enabled").AsBool();
    if (item != nullptr) {
        // A mark that the host refuses stays as it was.
        enabled ? menus->EnableItem(item) : menus->DisableItem(item);
    }
    const bool checked = MenuObjectMember(object, L"checked").AsBool();
    if (item != nullptr) {
        menus->CheckItem(item, checked ? 1 : 0);
    }
}

void RefreshMarks(const MomentaryMenuSuite& menus, MenuObjects& objects) {
    for (const auto& entry : RegisteredMenuItems()) {
        const JsonValue* object = nullptr;
        if (objects.GetMenuObject(entry.second, &object) == kNoErr) {
            SetMarks(menus, MenuItemHandleOf(entry), *object);
        }
    }
}

}  // namespace

std::int32_t updateMenuItem(AIMenuMessage* message) {
    constexpr const char* kName = "updateMenuItem";
    LogMessage(kLogEntry, "Entering %s", kName);
    const std::string path = CurrentDocumentPath();
    ReplyBuffer<kMenusSize> menuJson;
    if (RequirePluginCore().pfGetMenus(path.c_str(), menuJson.Data(), menuJson.Size()) == kNoErr) {
        *sMenuJsonCache = menuJson.Text();
    }
    MomentaryMenuSuite menus(kAIMenuSuite, kAIMenuSuiteVersion);
    menus.AcquireOrThrow();
    ai::UnicodeString text;
    if (menus->GetItemText(message->menuItem, text.Data()) == kNoErr) {
        // Also what a PluginCore that failed has left in the buffer.
        MenuDescription& description = DescriptionOf(menuJson.Text());
        // A gate only: when the PluginCore no longer knows the item's text, its description is of other items.
        const JsonValue* ignored = nullptr;
        if (description.byTitle.GetMenuObject(text.ToUtf8(), &ignored) == kNoErr) {
            RefreshMarks(menus, description.byID);
        }
    }
    LogMessage(kLogExit, "%s returning %d", kName, kNoErr);
    return kNoErr;
}

std::int32_t GoMenuItem(AIMenuMessage* message) {
    constexpr const char* kName = "GoMenuItem";
    LogMessage(kLogEntry, "Entering %s()", kName);
    const std::string path = CurrentDocumentPath();
    const PCILoader& pluginCore = RequirePluginCore();
    ReplyBuffer<kDocumentIDSize> documentID;
    // What the PluginCore answers here changes nothing: a document that it cannot name has an empty identifier.
    pluginCore.pfGetIDForDocument(path.c_str(), documentID.Data(), documentID.Size());
    pluginCore.pfUpdateDocumentFontUsage(documentID.Data(), CurrentDocumentFontUsage().c_str());
    const std::string& itemID = MenuItemID(message->menuItem);
    pluginCore.pfHandleMenuSelection(documentID.Data(), sMenuJsonCache->c_str(), itemID.c_str());
    LogMessage(kLogExit, "%s() returning %d", kName, kNoErr);
    return kNoErr;
}
