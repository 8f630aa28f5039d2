// The host's menus as a menu bar of Windows: the same groups, items, sub-menus, check marks and disabled states as in
// the model, and nothing else.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <map>
#include <vector>

#include "doubles/host/model/MenuModel.h"

namespace simhost {

class MenuBar {
  public:
    // Items get command identifiers from `firstCommand` on.
    explicit MenuBar(UINT firstCommand) : mFirstCommand(firstCommand) {}
    MenuBar(const MenuBar&) = delete;
    MenuBar& operator=(const MenuBar&) = delete;

    // Builds the bar anew and gives it to the window. Not while one of its menus is open.
    void ShowIn(HWND window, const MenuModel& menus);

    // The items of a menu that is about to open, in its order; empty for one that is not of this bar.
    std::vector<const void*> ItemsOf(HMENU menu) const;
    // Brings text, check mark and state of the menu's items up to date in place.
    void Refresh(HMENU menu, MenuModel& menus) const;
    // The item that was chosen; null for a command that is none of this bar's.
    const void* ItemOf(UINT command) const;

  private:
    HMENU MenuFor(const std::vector<MenuGroup>& groups, const MenuModel& menus);
    UINT_PTR CommandOf(const void* item);
    void Append(HMENU menu, const void* handle, const MenuModel& menus);

    UINT mFirstCommand;
    HMENU mBar = nullptr;
    // By command, from the first one on. Nothing is taken out: a choice may arrive when the bar has been built anew.
    std::vector<const void*> mItems;
    std::map<HMENU, std::vector<const void*>> mOpenables;  // separators between groups are null
};

}  // namespace simhost
