// The plug-in's start-up, shut-down and about box. The basic suite must be known.
// Thread: main.
#pragma once

#include <cstdint>

#include "host/Messages.h"

// Sets the plug-in up: tells the PluginCore where the plug-in is, allocates the globals block, adds menus, notifiers,
// file format, dialog suppression and timer. The PluginCore must be loaded. Returns 0, or the host's code when it
// refuses the blocks suite, the block or the menu suite, which ends start-up. Other failures are logged where they are
// met, and what the others throw goes on to the dispatch.
std::int32_t StartupPlugin(SPInterfaceMessage* message);

// Undoes start-up and frees the globals block. Returns the PluginCore's result, or the host's code; 0 at once when
// there is no globals block. What the PluginCore throws goes on when everything has been given back.
std::int32_t ShutdownPlugin(SPMessageData* message);

// Whether "Startup" has found the library usable, and no closing message has come since: the about box may then ask it.
// Set by the handler of "Startup", cleared by shut-down and by an unload that is allowed.
extern bool sPluginCoreIsUsable;

// Lets the PluginCore show its about dialog for the current document. Returns the PluginCore's result, 0
// without asking while it is not usable or lacks the entry. Throws what its calls throw: ai::Error, SuiteNotHeld,
// ForeignException.
std::int32_t AboutPlugin(SPMessageData* message);
