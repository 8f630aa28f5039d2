// The host's menus: groups of items in the order of adding. A sub-menu is a group that belongs to an item.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "doubles/host/model/ObjectTable.h"
#include "host/HostTypes.h"

namespace simhost {

struct MenuGroup {
    std::string name;
    const void* item = nullptr;  // whose sub-menu it is; null for a top-level group
};

struct MenuItem {
    std::string group;
    std::string text;
    std::optional<std::string> shortcutKey = {};  // in the keyboard-shortcut dictionary
    SPPluginRef owner = nullptr;
    std::int32_t options = 0;
    bool enabled = true;
    bool checked = false;
};

class MenuModel {
  public:
    // Has the group that the host reserves for plug-ins that deal with type.
    MenuModel();

    ObjectTable<MenuGroup> groups{0x18};
    ObjectTable<MenuItem> items{0x17};

    bool HasGroup(std::string_view name) const;
    // Adds a top-level group, unless there is one of that name.
    void NeedGroup(const std::string& name);

    // The n-th item with that text, counted from 1, in the order of adding. Throws std::runtime_error when there is
    // none.
    void* ItemWithText(const std::string& text, std::int64_t nth) const;

    // The sub-menus of an item, in the order of adding; for null the top-level groups.
    std::vector<MenuGroup> GroupsOf(const void* item) const;
    // The handles of a group's items, in the order of adding.
    std::vector<void*> ItemsIn(std::string_view group) const;
};

}  // namespace simhost
