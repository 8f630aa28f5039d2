// The host's menus: groups of items in the order in which they were added, and sub-menus, which are groups that hang on
// an item.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "doubles/host/model/ObjectTable.h"
#include "host/HostTypes.h"

namespace simhost {

struct MenuGroup {
    std::string name;
    const void* item = nullptr;  // whose sub-menu it is; null for one at the top
};

struct MenuItem {
    std::string group;
    std::string text;
    std::string shortcutKey;  // in the keyboard-shortcut dictionary; an item that is added without a key has ""
    SPPluginRef owner = nullptr;
    std::int32_t options = 0;
    bool enabled = true;
    bool checked = false;
};

class MenuModel {
  public:
    // Has the group that the host keeps for plug-ins that deal with type.
    MenuModel();

    ObjectTable<MenuGroup> groups{0x18};
    ObjectTable<MenuItem> items{0x17};

    bool HasGroup(std::string_view name) const;
    // A group at the top, unless there is one of that name.
    void NeedGroup(const std::string& name);

    // The n-th item with that text, counted from 1, in the order of adding. Throws std::runtime_error when there is
    // none.
    void* ItemWithText(const std::string& text, std::int64_t nth) const;

    // What hangs on an item, in the order of adding; for null the groups at the top.
    std::vector<MenuGroup> GroupsOf(const void* item) const;
    // The handles of a group's items, in the order of adding.
    std::vector<void*> ItemsIn(std::string_view group) const;
};

}  // namespace simhost
