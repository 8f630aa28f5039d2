#include "simhost/by_hand/MenuBar.h"

#include <algorithm>
#include <utility>

#include "doubles/common/Text.h"
#include "host/MenuSuite.h"

namespace simhost {

namespace {

// An ampersand is a letter here, no mark for a key.
std::wstring Label(const MenuItem& item) { return Wide(ReplaceAll(item.text, "&", "&&")); }

UINT StateOf(const MenuItem& item) {
    return (item.enabled ? MFS_ENABLED : MFS_GRAYED) | (item.checked ? MFS_CHECKED : MFS_UNCHECKED);
}

}  // namespace

void MenuBar::ShowIn(HWND window, const MenuModel& menus) {
    mOpenables.clear();
    const HMENU before = std::exchange(mBar, CreateMenu());
    for (const MenuGroup& group : menus.GroupsOf(nullptr)) {
        const HMENU menu = MenuFor({group}, menus);
        const UINT state = mOpenables.at(menu).empty() ? MF_GRAYED : MF_ENABLED;
        AppendMenuW(mBar, MF_POPUP | state, reinterpret_cast<UINT_PTR>(menu), Wide(group.name).c_str());
    }
    SetMenu(window, mBar);
    if (before != nullptr) {
        DestroyMenu(before);
    }
}

HMENU MenuBar::MenuFor(const std::vector<MenuGroup>& groups, const MenuModel& menus) {
    const HMENU menu = CreatePopupMenu();
    std::vector<const void*> shown;
    for (const MenuGroup& group : groups) {
        if (!shown.empty()) {
            AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
            shown.push_back(nullptr);
        }
        for (const void* const item : menus.ItemsIn(group.name)) {
            Append(menu, item, menus);
            shown.push_back(item);
        }
    }
    mOpenables[menu] = std::move(shown);
    return menu;
}

void MenuBar::Append(HMENU menu, const void* handle, const MenuModel& menus) {
    const MenuItem& item = menus.items.Objects().at(reinterpret_cast<std::uintptr_t>(handle));
    if ((item.options & kMenuItemIsSeparator) != 0) {
        AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        return;
    }
    const std::vector<MenuGroup> groups = menus.GroupsOf(handle);
    if (!groups.empty()) {
        AppendMenuW(menu, MF_POPUP | StateOf(item), reinterpret_cast<UINT_PTR>(MenuFor(groups, menus)),
                    Label(item).c_str());
        return;
    }
    AppendMenuW(menu, MF_STRING | StateOf(item), CommandOf(handle), Label(item).c_str());
}

UINT_PTR MenuBar::CommandOf(const void* item) {
    const auto found = std::find(mItems.begin(), mItems.end(), item);
    const auto index = found - mItems.begin();
    if (found == mItems.end()) {
        mItems.push_back(item);
    }
    return mFirstCommand + static_cast<UINT_PTR>(index);
}

std::vector<const void*> MenuBar::ItemsOf(HMENU menu) const {
    std::vector<const void*> items;
    const auto found = mOpenables.find(menu);
    if (found != mOpenables.end()) {
        std::copy_if(found->second.begin(), found->second.end(), std::back_inserter(items),
                     [](const void* item) { return item != nullptr; });
    }
    return items;
}

void MenuBar::Refresh(HMENU menu, MenuModel& menus) const {
    const auto found = mOpenables.find(menu);
    if (found == mOpenables.end()) {
        return;
    }
    for (std::size_t i = 0; i < found->second.size(); ++i) {
        const MenuItem* const item = menus.items.Find(found->second[i]);
        if (item == nullptr || (item->options & kMenuItemIsSeparator) != 0) {
            continue;
        }
        std::wstring label = Label(*item);
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_STATE | MIIM_STRING;
        info.fState = StateOf(*item);
        info.dwTypeData = label.data();
        SetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
    }
}

const void* MenuBar::ItemOf(UINT command) const {
    return command < mFirstCommand || command - mFirstCommand >= mItems.size() ? nullptr
                                                                               : mItems[command - mFirstCommand];
}

}  // namespace simhost
