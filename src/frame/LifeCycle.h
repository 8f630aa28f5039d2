// The plug-in's start-up, shut-down and about box. Main thread only; the basic suite must be known.
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

// Whether shut-down has run since the last start-up: the suites have then been given back, and what the host still
// sends must not acquire them again, because nobody would release them.
bool HasShutDown();

// Lets the PluginCore show its about dialog for the current document. Returns the PluginCore's result, 0 without a
// PluginCore that has the entry. Throws what its calls throw: ai::Error, SuiteNotHeld, ForeignException.
std::int32_t AboutPlugin(SPMessageData* message);
