// Menus as Windows holds them.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "doubles/common/Text.h"

namespace by_hand {

struct ReadItem {
    std::string label;
    bool separator = false;
    bool checked = false;
    bool disabled = false;
    HMENU subMenu = nullptr;
    UINT command = 0;
};

inline ReadItem ReadItemAt(HMENU menu, int place) {
    wchar_t label[256] = L"";
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_STRING | MIIM_SUBMENU | MIIM_ID;
    info.dwTypeData = label;
    info.cch = 256;
    if (GetMenuItemInfoW(menu, static_cast<UINT>(place), TRUE, &info) == 0) {
        throw std::runtime_error("no such item in the menu");
    }
    return {simhost::Utf8(std::wstring(label)),
            (info.fType & MFT_SEPARATOR) != 0,
            (info.fState & MFS_CHECKED) != 0,
            (info.fState & MFS_GRAYED) != 0,
            info.hSubMenu,
            info.wID};
}

// A line for each item, indented below the item whose sub-menu it is in.
inline std::vector<std::string> LinesOf(HMENU menu, const std::string& indent = "") {
    std::vector<std::string> lines;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        const ReadItem item = ReadItemAt(menu, i);
        lines.push_back(indent + (item.separator ? "---" : item.label) + (item.subMenu == nullptr ? "" : " >") +
                        (item.checked ? " (checked)" : "") + (item.disabled && !item.separator ? " (disabled)" : ""));
        if (item.subMenu != nullptr) {
            const std::vector<std::string> below = LinesOf(item.subMenu, indent + "  ");
            lines.insert(lines.end(), below.begin(), below.end());
        }
    }
    return lines;
}

// The command of the item that the labels lead to, as in {"Fonts", "Activate"}.
inline UINT CommandOf(HMENU menu, const std::vector<std::string>& labels) {
    ReadItem found;
    found.subMenu = menu;
    for (const std::string& label : labels) {
        const HMENU within = found.subMenu;
        int place = 0;
        do {
            found = ReadItemAt(within, place++);
        } while (found.label != label);
    }
    return found.command;
}

}  // namespace by_hand
