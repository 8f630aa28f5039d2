// The menus of the fake host. What the operations of the menu suite are asked is recorded in the host's calls, handles
// in full: "EnableItem(0x100005001)". An operation that is made to fail fills in what there is all the same, so that a
// caller who does not look at the answer is found out.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "host/MenuSuite.h"

struct FakeMenuItem {
    AIMenuItemHandle handle;
    std::string text;                // UTF-8
    std::optional<std::string> key;  // of the keyboard-shortcut dictionary; a null pointer when absent
    SPPluginRef owner;
};

struct FakeMenus {
    // In the order of their indices. Items that the plug-in adds come last, without a key.
    std::deque<FakeMenuItem> items;
    // The handles that AddMenuItem gives out next, null ones and those of failing calls included. When there are none
    // left, an item added gets one of the host's own, and a failing call leaves the handle alone.
    std::deque<AIMenuItemHandle> nextHandles;

    // Adds an item of somebody else's; its handle.
    AIMenuItemHandle Add(const std::string& text, const std::optional<std::string>& key = {},
                         SPPluginRef owner = nullptr);
    AIMenuItemHandle NewHandle();

    int handleCount = 0;
};

const AIMenuSuite& FakeMenuSuite();
