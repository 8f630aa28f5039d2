#include "menus/MenuItemRegistry.h"

namespace {

MenuItemMap& Registry() {
    static MenuItemMap sRegistry;
    return sRegistry;
}

}  // namespace

std::string& MenuItemID(AIMenuItemHandle item) { return Registry()[reinterpret_cast<std::uintptr_t>(item)]; }

const MenuItemMap& RegisteredMenuItems() { return Registry(); }
