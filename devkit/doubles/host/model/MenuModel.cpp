#include "doubles/host/model/MenuModel.h"

#include <algorithm>
#include <stdexcept>

namespace simhost {

MenuModel::MenuModel() { NeedGroup("Type Plugins1"); }

bool MenuModel::HasGroup(std::string_view name) const {
    const auto& all = groups.Objects();
    return std::any_of(all.begin(), all.end(), [&](const auto& entry) { return entry.second.name == name; });
}

void MenuModel::NeedGroup(const std::string& name) {
    if (!HasGroup(name)) {
        groups.Add({name});
    }
}

void* MenuModel::ItemWithText(const std::string& text, std::int64_t nth) const {
    for (const auto& [handle, item] : items.Objects()) {
        if (item.text == text && --nth == 0) {
            return reinterpret_cast<void*>(handle);
        }
    }
    throw std::runtime_error("the menu has no such item \"" + text + "\"");
}

std::vector<MenuGroup> MenuModel::GroupsOf(const void* item) const {
    std::vector<MenuGroup> found;
    for (const auto& [handle, group] : groups.Objects()) {
        if (group.item == item) {
            found.push_back(group);
        }
    }
    return found;
}

std::vector<void*> MenuModel::ItemsIn(std::string_view group) const {
    std::vector<void*> found;
    for (const auto& [handle, item] : items.Objects()) {
        if (item.group == group) {
            found.push_back(reinterpret_cast<void*>(handle));
        }
    }
    return found;
}

}  // namespace simhost
