#include "menus/MenuItemRegistry.h"

namespace {

MenuItemMap sRegistry;

}  // namespace

std::string& MenuItemID(AIMenuItemHandle item) { return sRegistry[reinterpret_cast<std::uintptr_t>(item)]; }

const MenuItemMap& RegisteredMenuItems() { return sRegistry; }
