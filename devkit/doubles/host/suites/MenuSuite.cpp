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

// Whether the text can be read; a string object that holds nothing is the empty text.
bool ReadText(const SuiteCall& call, const ai::UnicodeStringData& string, std::string& text) {
    if (string.impl == nullptr) {
        return true;
    }
    const std::u16string* const units = Host().objects.strings.Find(string.impl);
    if (units == nullptr) {
        call.Stale(Host().objects.strings, string.impl, "text");
        return false;
    }
    text = Utf8(*units);
    return true;
}

AIErr AddMenuItem(SPPluginRef self, const char* key, AIPlatformAddMenuItemDataUS* data, std::int32_t options,
                  AIMenuItemHandle* item) {
    const SuiteCall call(kName, "AddMenuItem");
    if (call.code != 0) {
        return call.code;
    }
    if (self == nullptr || data == nullptr || data->groupName == nullptr) {
        return call.BadArgument("plug-in, record or group is missing");
    }
    MenuItem added{data->groupName, "", key == nullptr ? "" : key, self, options};
    if (!call.IsOwnReference(self) || !ReadText(call, data->itemText, added.text)) {
        return kBadParameterErr;
    }
    if (!Menus().HasGroup(added.group)) {
        return RefuseGroup("there is not", added.group, kNoSuchGroup);
    }
    void* const handle = Menus().items.Add(std::move(added));
    if (item != nullptr) {
        *item = static_cast<AIMenuItemHandle>(handle);
    }
    return 0;
}

AIErr AddMenuGroupAsSubMenu(const char* name, std::int32_t /*options*/, AIMenuItemHandle item,
                            AIMenuGroupHandle* group) {
    const SuiteCall call(kName, "AddMenuGroupAsSubMenu");
    if (call.code != 0) {
        return call.code;
    }
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
}

// Runs `use` with the item that an operation is called for.
template <class Use>
AIErr WithItem(const char* operation, AIMenuItemHandle handle, Use use) {
    const SuiteCall call(kName, operation);
    if (call.code != 0) {
        return call.code;
    }
    MenuItem* const item = Menus().items.Find(handle);
    return item == nullptr ? call.Stale(Menus().items, handle, "menu item") : use(call, *item);
}

AIErr EnableItem(AIMenuItemHandle handle) {
    return WithItem("EnableItem", handle, [](const SuiteCall&, MenuItem& item) {
        item.enabled = true;
        return 0;
    });
}

AIErr DisableItem(AIMenuItemHandle handle) {
    return WithItem("DisableItem", handle, [](const SuiteCall&, MenuItem& item) {
        item.enabled = false;
        return 0;
    });
}

AIErr CheckItem(AIMenuItemHandle handle, AIBoolean checked) {
    return WithItem("CheckItem", handle, [=](const SuiteCall&, MenuItem& item) {
        item.checked = checked != 0;
        return 0;
    });
}

AIErr GetItemText(AIMenuItemHandle handle, ai::UnicodeStringData& text) {
    return WithItem("GetItemText", handle,
                    [&](const SuiteCall& call, const MenuItem& item) { return AnswerText(call, item.text, text); });
}

// The key belongs to the item.
AIErr GetMenuItemKeyboardShortcutDictionaryKey(AIMenuItemHandle handle, const char** key) {
    return WithItem("GetMenuItemKeyboardShortcutDictionaryKey", handle,
                    [=](const SuiteCall& call, const MenuItem& item) {
                        if (key == nullptr) {
                            return call.BadArgument("nowhere to put the answer");
                        }
                        *key = item.shortcutKey.c_str();
                        return 0;
                    });
}

AIErr GetMenuItemPlugin(AIMenuItemHandle handle, SPPluginRef* plugin) {
    return WithItem("GetMenuItemPlugin", handle, [=](const SuiteCall& call, const MenuItem& item) {
        if (plugin == nullptr) {
            return call.BadArgument("nowhere to put the answer");
        }
        *plugin = item.owner;
        return 0;
    });
}

AIErr CountMenuItems(std::int32_t* count) {
    const SuiteCall call(kName, "CountMenuItems");
    if (call.code != 0) {
        return call.code;
    }
    if (count == nullptr) {
        return call.BadArgument("nowhere to put the answer");
    }
    *count = static_cast<std::int32_t>(Menus().items.Size());
    return 0;
}

AIErr GetNthMenuItem(std::int32_t n, AIMenuItemHandle* item) {
    const SuiteCall call(kName, "GetNthMenuItem");
    if (call.code != 0) {
        return call.code;
    }
    if (item == nullptr || n < 0) {
        return call.BadArgument("a number below 0, or nowhere to put the answer");
    }
    for (const auto& [handle, ignored] : Menus().items.Objects()) {
        if (n-- == 0) {
            *item = reinterpret_cast<AIMenuItemHandle>(handle);
            return 0;
        }
    }
    return kNoSuchItem;
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
