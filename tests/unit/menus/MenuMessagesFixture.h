// Menu items that are registered and described, and the messages about them.
#pragma once

#include "menus/MenuItemRegistry.h"
#include "menus/MenuMessages.h"
#include "unit/menus/MenuFixture.h"

// One item of a description.
inline std::string ItemJson(const std::string& id, const std::string& title, const char* enabled = "true",
                            const char* checked = "false", const std::string& child = "null") {
    return R"({"id":")" + id + R"(","title":")" + title + R"(","enabled":)" + enabled + R"(,"checked":)" + checked +
           R"(,"child":)" + child + "}";
}

class MenuMessagesTest : public MenuTest {
  protected:
    MenuMessagesTest() { host.currentPath = "C:/Pl\xC3\xA4ne/a.ai"; }

    using Calls = std::vector<std::string>;

    // An item of the plug-in's with this text, registered under the identifier; its handle.
    AIMenuItemHandle Register(const std::string& text, const std::string& id) {
        const AIMenuItemHandle handle = host.AddItem(text, {}, host.plugin);
        MenuItemID(handle) = id;
        return handle;
    }
    static void Describe(const std::string& json) { ThePluginCore().script["GetMenus"].text = json; }

    std::int32_t Update(AIMenuItemHandle item) {
        AIMenuMessage message{host.MessageData(), item};
        return updateMenuItem(&message);
    }
    std::int32_t Go(AIMenuItemHandle item) {
        AIMenuMessage message{host.MessageData(), item};
        return GoMenuItem(&message);
    }

    // The calls that set marks.
    Calls Marks() const {
        Calls marks;
        for (const std::string& call : host.calls.Calls()) {
            if (call.starts_with("EnableItem(") || call.starts_with("DisableItem(") || call.starts_with("CheckItem(")) {
                marks.push_back(call);
            }
        }
        return marks;
    }
    static std::string Enabled(AIMenuItemHandle item) { return "EnableItem(" + HandleText(item) + ")"; }
    static std::string Disabled(AIMenuItemHandle item) { return "DisableItem(" + HandleText(item) + ")"; }
    static std::string Checked(AIMenuItemHandle item, int checked) {
        return "CheckItem(" + HandleText(item) + ", " + std::to_string(checked) + ")";
    }
    static const std::string& Selection() { return PluginCoreCalls().back(); }
};
