// "AI Menu Suite": the items that the plug-in adds. Sub-menus, and items of other owners, are not offered.
#include "host/MenuSuite.h"

#include "simulated_host/suites/AllSuites.h"
#include "simulated_host/suites/HostStrings.h"
#include "simulated_host/Text.h"

namespace simhost {

namespace {

constexpr const char* kName = "AI Menu Suite";

std::string TextOf(const ai::UnicodeStringData& string) {
    const std::u16string* const units = Host().objects.strings.Find(string.impl);
    return units == nullptr ? std::string() : Utf8(*units);
}

AIErr AddMenuItem(SPPluginRef self, const char* key, AIPlatformAddMenuItemDataUS* data, std::int32_t options,
                  AIMenuItemHandle* item) {
    const SuiteCall call(kName, "AddMenuItem");
    if (call.code != 0) {
        return call.code;
    }
    if (self == nullptr || key == nullptr || data == nullptr || data->groupName == nullptr) {
        return call.BadArgument("plug-in, key, record or group is missing");
    }
    void* const handle = Host().model.menuItems.Add(MenuItem{key, data->groupName, TextOf(data->itemText), options});
    if (item != nullptr) {
        *item = static_cast<AIMenuItemHandle>(handle);
    }
    return 0;
}

template <class Change>
AIErr ChangeItem(const char* operation, AIMenuItemHandle handle, Change change) {
    const SuiteCall call(kName, operation);
    if (call.code != 0) {
        return call.code;
    }
    MenuItem* const item = Host().model.menuItems.Find(handle);
    if (item == nullptr) {
        return call.Stale(Host().model.menuItems, handle, "menu item");
    }
    change(*item);
    return 0;
}

AIErr EnableItem(AIMenuItemHandle handle) {
    return ChangeItem("EnableItem", handle, [](MenuItem& item) { item.enabled = true; });
}

AIErr DisableItem(AIMenuItemHandle handle) {
    return ChangeItem("DisableItem", handle, [](MenuItem& item) { item.enabled = false; });
}

AIErr CheckItem(AIMenuItemHandle handle, AIBoolean checked) {
    return ChangeItem("CheckItem", handle, [=](MenuItem& item) { item.checked = checked != 0; });
}

AIErr CountMenuItems(std::int32_t* count) {
    const SuiteCall call(kName, "CountMenuItems");
    if (call.code != 0) {
        return call.code;
    }
    if (count == nullptr) {
        return call.BadArgument("nowhere to put the answer");
    }
    *count = static_cast<std::int32_t>(Host().model.menuItems.Size());
    return 0;
}

}  // namespace

void InstallMenuSuite(SuiteStore& suites) {
    auto& table = suites.Table<AIMenuSuite>(kName);
    table.AddMenuItem = &AddMenuItem;
    table.EnableItem = &EnableItem;
    table.DisableItem = &DisableItem;
    table.CheckItem = &CheckItem;
    table.CountMenuItems = &CountMenuItems;
}

}  // namespace simhost
