// A PluginCore that has the plug-in add menu items, one at a time.
#pragma once

#include "menus/MenuItemRegistry.h"
#include "menus/MenuTree.h"
#include "unit/menus/MenuFixture.h"

// What the PluginCore passes for one item.
struct Item {
    const char* id = "id";
    const char* label = "Label";
    const char* itemText = "Text";
    std::uint8_t checked = 0;
    std::uint8_t enabled = 1;
    std::uint8_t hasSubMenu = 0;
    const char* parentID = nullptr;
};

// What one call of the callback did.
struct Outcome {
    std::int32_t result = -1;
    std::vector<RecordedLine> log;
    std::vector<std::string> calls;
};

class MenuTreeTest : public MenuTest {
  protected:
    using Calls = std::vector<std::string>;
    using Log = std::vector<RecordedLine>;

    std::int32_t AddAll() { return AddAllQuorvelMenuItems(); }

    // Has the PluginCore add an item, and tells what that did; what surrounds it is left out.
    Outcome Add(const Item& item) {
        Outcome outcome;
        ThePluginCore().script["CreateMenusFromJSONBuffer"].during = [&] {
            host.calls.Clear();
            ClearRecordedLog();
            outcome.result = CallBack(item);
            outcome.log = RecordedLog();
            outcome.calls = host.calls.Calls();
            context = Shown(ThePluginCore().menuContext);
        };
        AddAll();
        return outcome;
    }

    static std::int32_t CallBack(const Item& item) {
        return ThePluginCore().menuCallback(item.id, item.label, item.itemText, item.checked, item.enabled,
                                            item.hasSubMenu, item.parentID, ThePluginCore().menuContext);
    }

    // The lines of one call with `inner` in between.
    Log Framed(const std::string& arguments, const Calls& inner) const {
        Log lines = {{1, "Entering AddIllustratorMenu(" + arguments + ", " + context + ")"}};
        for (const std::string& line : inner) {
            lines.push_back({0, line});
        }
        lines.push_back({-1, "Exiting AddIllustratorMenu()"});
        return lines;
    }
    Log Framed(const Calls& inner) const {
        return Framed("id='id', label='Label', checked=0, enabled=1, parentID=(null)", inner);
    }

    std::string CallingLine(const std::string& label, const std::string& group, const std::string& text,
                            const std::string& options, AIMenuItemHandle item) const {
        return "Calling AddMenuItem(SPPluginRef=" + Shown(host.plugin) + ", itemKeyWithIllegalCharsRemoved='" + label +
               "', menuData.groupName='" + group + "', menuData.itemText='" + text + "', options=" + options +
               ", pMenuItem=" + Shown(item);
    }

    // The item that was added last.
    AIMenuItemHandle LastItem() const { return host.Items().back(); }

    std::string context;
};
