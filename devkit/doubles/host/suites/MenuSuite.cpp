// "AI Menu Suite": the menus, with the host's own items, those of other plug-ins, and those that the plug-in adds.
#include "host/MenuSuite.h"

#include "doubles/common/Text.h"
#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/HostStrings.h"
#include "doubles/host/suites/SuiteCall.h"

namespace simhost {

namespace {

constexpr const char* kName = "AI Menu Suite";
constexpr AIErr kNoSuchGroup = static_cast<AIErr>(FourCharCode("NGRP"));
constexpr AIErr kGroupIsThere = static_cast<AIErr>(FourCharCode("DGRP"));
constexpr AIErr kNoSuchItem = static_cast<AIErr>(FourCharCode("NITM"));

MenuModel& Menus() { return Host().model.menus; }

AIErr RefuseGroup(const char* what, const std::string& group, AIErr code) {
    Host().notes.push_back(std::string(what) + " the menu group \"" + group + "\"");
    return code;
}

// The text of a string object, empty for one that holds nothing. Nothing for a stale one.
std::optional<std::string> TextOf(const ai::UnicodeStringData& string) {
    if (string.impl == nullptr) {
        return "";
    }
    const std::u16string* const units = Host().objects.strings.Find(string.impl);
    return units == nullptr ? std::nullopt : std::optional(Utf8(*units));
}

AIErr AddMenuItem(SPPluginRef self, const char* key, AIPlatformAddMenuItemDataUS* data, std::int32_t options,
                  AIMenuItemHandle* item) {
    const SuiteCall call(
        kName, "AddMenuItem", key, data == nullptr ? nullptr : data->groupName,
        [&] { return data == nullptr ? "null" : "'" + TextOf(data->itemText).value_or("stale") + "'"; },
        [&] { return Shown(options) + (item == nullptr || *item == nullptr ? "" : ", handle not null"); });
    return call.Perform([&] {
        if (self == nullptr || data == nullptr || data->groupName == nullptr) {
            return call.BadArgument("plug-in, record or group is missing");
        }
        const std::optional<std::string> text = TextOf(data->itemText);
        if (!text) {
            return call.Stale(Host().objects.strings, data->itemText.impl, "text");
        }
        if (!call.IsOwnReference(self)) {
            return kBadParameterErr;
        }
        MenuItem added{data->groupName, *text, std::nullopt, self, options};
        if (key != nullptr) {
            added.shortcutKey = key;
        }
        if (!Menus().HasGroup(added.group)) {
            return RefuseGroup("there is not", added.group, kNoSuchGroup);
        }
        void* const handle = Menus().items.Add(std::move(added));
        if (item != nullptr) {
            *item = static_cast<AIMenuItemHandle>(handle);
        }
        return 0;
    });
}

AIErr AddMenuGroupAsSubMenu(const char* name, std::int32_t options, AIMenuItemHandle item, AIMenuGroupHandle* group) {
    const SuiteCall call(kName, "AddMenuGroupAsSubMenu", name, options, item);
    return call.Perform([&] {
        if (name == nullptr || group == nullptr) {
            return call.BadArgument("name or target is missing");
        }
        if (Menus().items.Find(item) == nullptr) {
            return call.Stale(Menus().items, item, "menu item");
        }
        if (Menus().HasGroup(name)) {
            return RefuseGroup("there is already", name, kGroupIsThere);
        }
        *group = static_cast<AIMenuGroupHandle>(Menus().groups.Add({name, item}));
        return 0;
    });
}

// Runs `use` with the item that an operation is called for.
template <class Use>
AIErr WithItem(const SuiteCall& call, AIMenuItemHandle handle, Use use) {
    return call.Perform([&]() -> AIErr {
        MenuItem* const item = Menus().items.Find(handle);
        return item == nullptr ? call.Stale(Menus().items, handle, "menu item") : use(*item);
    });
}

AIErr EnableItem(AIMenuItemHandle handle) {
    return WithItem(SuiteCall(kName, "EnableItem", handle), handle, [](MenuItem& item) {
        item.enabled = true;
        return 0;
    });
}

AIErr DisableItem(AIMenuItemHandle handle) {
    return WithItem(SuiteCall(kName, "DisableItem", handle), handle, [](MenuItem& item) {
        item.enabled = false;
        return 0;
    });
}

AIErr CheckItem(AIMenuItemHandle handle, AIBoolean checked) {
    return WithItem(SuiteCall(kName, "CheckItem", handle, checked), handle, [=](MenuItem& item) {
        item.checked = checked != 0;
        return 0;
    });
}

AIErr GetItemText(AIMenuItemHandle handle, ai::UnicodeStringData& text) {
    const SuiteCall call(kName, "GetItemText", handle);
    return WithItem(call, handle, [&](const MenuItem& item) { return AnswerText(call, item.text, text); });
}

// The key belongs to the item; null for an item without one.
AIErr GetMenuItemKeyboardShortcutDictionaryKey(AIMenuItemHandle handle, const char** key) {
    const SuiteCall call(kName, "GetMenuItemKeyboardShortcutDictionaryKey", handle);
    return WithItem(call, handle, [&](const MenuItem& item) {
        if (key == nullptr) {
            return call.BadArgument("nowhere to put the answer");
        }
        *key = item.shortcutKey ? item.shortcutKey->c_str() : nullptr;
        return 0;
    });
}

AIErr GetMenuItemPlugin(AIMenuItemHandle handle, SPPluginRef* plugin) {
    const SuiteCall call(kName, "GetMenuItemPlugin", handle);
    return WithItem(call, handle, [&](const MenuItem& item) {
        if (plugin == nullptr) {
            return call.BadArgument("nowhere to put the answer");
        }
        *plugin = item.owner;
        return 0;
    });
}

AIErr CountMenuItems(std::int32_t* count) {
    const SuiteCall call(kName, "CountMenuItems");
    return call.Perform([&] {
        if (count == nullptr) {
            return call.BadArgument("nowhere to put the answer");
        }
        *count = static_cast<std::int32_t>(Menus().items.Size());
        return 0;
    });
}

AIErr GetNthMenuItem(std::int32_t n, AIMenuItemHandle* item) {
    const SuiteCall call(kName, "GetNthMenuItem", n);
    return call.Perform([&] {
        if (item == nullptr || n < 0) {
            return call.BadArgument("a number below 0, or nowhere to put the answer");
        }
        std::int32_t index = 0;
        for (const auto& [handle, ignored] : Menus().items.Objects()) {
            if (index++ == n) {
                *item = reinterpret_cast<AIMenuItemHandle>(handle);
                return 0;
            }
        }
        return kNoSuchItem;
    });
}

}  // namespace

void InstallMenuSuite(SuiteStore& suites) {
    auto& table = suites.Table<AIMenuSuite>(kName);
    table.AddMenuItem = &AddMenuItem;
    table.GetMenuItemKeyboardShortcutDictionaryKey = &GetMenuItemKeyboardShortcutDictionaryKey;
    table.GetMenuItemPlugin = &GetMenuItemPlugin;
    table.CountMenuItems = &CountMenuItems;
    table.GetNthMenuItem = &GetNthMenuItem;
    table.EnableItem = &EnableItem;
    table.DisableItem = &DisableItem;
    table.GetItemText = &GetItemText;
    table.CheckItem = &CheckItem;
    table.AddMenuGroupAsSubMenu = &AddMenuGroupAsSubMenu;
}

}  // namespace simhost
