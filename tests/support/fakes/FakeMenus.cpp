#include "support/fakes/FakeMenus.h"

#include <algorithm>

#include "doubles/common/OwnMemory.h"
#include "support/fakes/FakeHost.h"
#include "support/fakes/HostText.h"

namespace {

constexpr AIErr kNoSuchItem = 1;

FakeMenus& Menus() { return sFakeHost->menus; }

FakeMenuItem* Find(AIMenuItemHandle handle) {
    const auto hasHandle = [&](const FakeMenuItem& item) { return item.handle == handle; };
    const auto item = std::find_if(Menus().items.begin(), Menus().items.end(), hasHandle);
    return item == Menus().items.end() || handle == nullptr ? nullptr : &*item;
}

// Records a call about an item; its answer, which is never success for an item that there is not.
AIErr RecordForItem(const char* operation, AIMenuItemHandle item) {
    const AIErr answer = sFakeHost->Record(operation, Address(item));
    return answer == 0 && Find(item) == nullptr ? kNoSuchItem : answer;
}

// The handle of the item that is being added with this answer.
void GiveHandle(AIErr answer, AIMenuItemHandle* item) {
    if (!Menus().nextHandles.empty()) {
        *item = Menus().nextHandles.front();
        Menus().nextHandles.pop_front();
    } else if (answer == 0) {
        *item = Menus().NewHandle();
    }
}

AIErr AddMenuItem(SPPluginRef self, const char* key, AIPlatformAddMenuItemDataUS* data, std::int32_t options,
                  AIMenuItemHandle* item) {
    const std::string text = TextOf(data->itemText.impl);
    const AIErr answer = sFakeHost->Record(
        "AddMenuItem", Quoted(key) + ", " + Quoted(data->groupName) + ", '" + text + "', " + std::to_string(options) +
                           (self == sFakeHost->plugin ? "" : ", for another plug-in") +
                           (*item == nullptr ? "" : ", handle not null"));
    GiveHandle(answer, item);
    if (answer == 0 && *item != nullptr) {
        Menus().items.push_back({*item, text, std::nullopt, self});
    }
    return answer;
}

AIErr GetMenuItemKeyboardShortcutDictionaryKey(AIMenuItemHandle item, const char** key) {
    if (const FakeMenuItem* const found = Find(item)) {
        *key = found->key.has_value() ? found->key->c_str() : nullptr;
    }
    return RecordForItem("GetMenuItemKeyboardShortcutDictionaryKey", item);
}

AIErr GetMenuItemPlugin(AIMenuItemHandle item, SPPluginRef* plugin) {
    if (const FakeMenuItem* const found = Find(item)) {
        *plugin = found->owner;
    }
    return RecordForItem("GetMenuItemPlugin", item);
}

AIErr CountMenuItems(std::int32_t* count) {
    *count = static_cast<std::int32_t>(Menus().items.size());
    return sFakeHost->Record("CountMenuItems");
}

AIErr GetNthMenuItem(std::int32_t n, AIMenuItemHandle* item) {
    const AIErr answer = sFakeHost->Record("GetNthMenuItem", std::to_string(n));
    if (static_cast<std::size_t>(n) >= Menus().items.size()) {
        return answer != 0 ? answer : kNoSuchItem;
    }
    *item = Menus().items[static_cast<std::size_t>(n)].handle;
    return answer;
}

AIErr EnableItem(AIMenuItemHandle item) { return RecordForItem("EnableItem", item); }

AIErr DisableItem(AIMenuItemHandle item) { return RecordForItem("DisableItem", item); }

AIErr GetItemText(AIMenuItemHandle item, ai::UnicodeStringData& text) {
    if (const FakeMenuItem* const found = Find(item)) {
        sFakeHost->liveStrings += text.impl == nullptr ? 1 : 0;
        SetText(text.impl, found->text);
    }
    return RecordForItem("GetItemText", item);
}

AIErr CheckItem(AIMenuItemHandle item, AIBoolean checked) {
    return sFakeHost->Record("CheckItem", Address(item) + ", " + std::to_string(checked));
}

AIErr AddMenuGroupAsSubMenu(const char* name, std::int32_t options, AIMenuItemHandle item, AIMenuGroupHandle* group) {
    const AIErr answer = sFakeHost->Record("AddMenuGroupAsSubMenu",
                                           Quoted(name) + ", " + std::to_string(options) + ", " + Address(item));
    if (answer == 0) {
        *group = reinterpret_cast<AIMenuGroupHandle>(0x0000000100008001);
    }
    return answer;
}

AIMenuSuite FilledMenuSuite() {
    AIMenuSuite suite{};
    suite.AddMenuItem = kWithOwnMemory<AddMenuItem>;
    suite.GetMenuItemKeyboardShortcutDictionaryKey = kWithOwnMemory<GetMenuItemKeyboardShortcutDictionaryKey>;
    suite.GetMenuItemPlugin = kWithOwnMemory<GetMenuItemPlugin>;
    suite.CountMenuItems = kWithOwnMemory<CountMenuItems>;
    suite.GetNthMenuItem = kWithOwnMemory<GetNthMenuItem>;
    suite.EnableItem = kWithOwnMemory<EnableItem>;
    suite.DisableItem = kWithOwnMemory<DisableItem>;
    suite.GetItemText = kWithOwnMemory<GetItemText>;
    suite.CheckItem = kWithOwnMemory<CheckItem>;
    suite.AddMenuGroupAsSubMenu = kWithOwnMemory<AddMenuGroupAsSubMenu>;
    return suite;
}

}  // namespace

AIMenuItemHandle FakeMenus::Add(const std::string& text, const std::optional<std::string>& key, SPPluginRef owner) {
    items.push_back({NewHandle(), text, key, owner});
    return items.back().handle;
}

AIMenuItemHandle FakeMenus::NewHandle() {
    return reinterpret_cast<AIMenuItemHandle>(0x0000000100005000 + static_cast<std::uintptr_t>(++handleCount));
}

const AIMenuSuite& FakeMenuSuite() {
    static const AIMenuSuite suite = FilledMenuSuite();
    return suite;
}
