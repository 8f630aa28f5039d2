// The PluginCore's part in adding menus: it goes through its own description and has the plug-in add each item.
//
// Thread: main.
#pragma once

#include <string>
#include <vector>

#include "plugincore/PluginCore.h"

// Calls back once per item, each before its children; an item that is refused does not stop the others. The label is
// the item's own member "label" when it has one, else its title. Returns for each item its identifier and what the
// plug-in answered, as in "activate -> 0". A text that is no JSON has no items.
std::vector<std::string> CreateMenuItems(const char* json, PluginCoreMenuCallback callback, void* context);
