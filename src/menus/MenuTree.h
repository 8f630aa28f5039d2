// Adds the font manager's commands to the host's menus, as the PluginCore describes them.
// Thread: main.
#pragma once

#include <cstdint>

// Fetches the PluginCore's menu description and has the PluginCore add its items with AddIllustratorMenu. Returns the
// PluginCore's result. Throws the host's code when the menu suite is refused, and what its calls throw: ai::Error (the
// document's path), SuiteNotHeld, NoPluginCore, ForeignException. Needs a globals block.
std::int32_t AddAllQuorvelMenuItems();

// The callback that the PluginCore calls once per item, parents first. `context` is what
// AddAllQuorvelMenuItems passed; `label` names the group of the item's sub-menu, and `parentID` is the label of the
// item above, null at the top. Returns 0, kDuplicateMenuItem for a top-level label that is the shortcut key of an item
// that is there already, the host's code, or kBadParameterErr when `id`, `label` or `context` is null or anything else
// fails, such as memory. Throws nothing: it is called by code of another compiler.
std::int32_t AddIllustratorMenu(const char* id, const char* label, const char* itemText, std::uint8_t checked,
                                std::uint8_t enabled, std::uint8_t hasSubMenu, const char* parentID,
                                void* context) noexcept;
