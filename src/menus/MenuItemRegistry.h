// Which menu item of the host stands for which item of the PluginCore. Process-wide, empty at load; it only grows.
// Thread: main.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "host/HostTypes.h"

// Item identifiers by the host's handle, taken as a number.
using MenuItemMap = std::map<std::uint64_t, std::string>;

// The identifier of the item; an unknown handle is entered with an empty one.
// Lifetime: as long as the module is loaded.
std::string& MenuItemID(AIMenuItemHandle item);

// All entries, in the order of the handles. There may be one under the null handle: an item that the host refused,
// or a choice that named none.
// Lifetime: as long as the module is loaded.
const MenuItemMap& RegisteredMenuItems();

// The handle that an entry stands for.
inline AIMenuItemHandle MenuItemHandleOf(const MenuItemMap::value_type& entry) {
    return reinterpret_cast<AIMenuItemHandle>(static_cast<std::uintptr_t>(entry.first));
}
