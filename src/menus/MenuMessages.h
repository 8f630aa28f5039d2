// What the host sends about the font manager's menu items.
//
// Both operations also throw what their calls throw: ai::Error (the host's texts), SuiteNotHeld, NoPluginCore,
// ForeignException.
// Thread: main.
#pragma once

#include <cstdint>

#include "host/Messages.h"

// Refreshes the enabled and checked marks of all items from the PluginCore's present description, provided that the
// description knows the text of the item that the message names. Always 0. Throws the host's code when the menu suite
// is refused, std::out_of_range for a description that lacks a member (MenuObject.h), std::bad_variant_access for a
// mark that is no boolean, and utf8::exception for an unpaired surrogate; the marks set until then stay.
std::int32_t updateMenuItem(AIMenuMessage* message);

// Reports the chosen item to the PluginCore, with the current document's identifier and font usage and the description
// that the last refresh read. Always 0.
std::int32_t GoMenuItem(AIMenuMessage* message);
