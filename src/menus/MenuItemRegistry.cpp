#include "menus/MenuItemRegistry.h"

#include "support/UntilUnloaded.h"

namespace {

const UntilUnloaded<MenuItemMap> sRegistry;

}  // namespace

std::string& MenuItemID(AIMenuItemHandle item) { return (*sRegistry)[reinterpret_cast<std::uintptr_t>(item)]; }

const MenuItemMap& RegisteredMenuItems() { return *sRegistry; }
