// The host's own Find Font command. The host offers no call for it, so the plug-in that owns its menu item is asked to
// act as if the item had been chosen. Both operations throw nothing; without a globals block they find no command.
//
// Nothing in the plug-in calls them yet; they are part of the system for font managers that open the dialog.
// Thread: main.
#pragma once

// Finds the menu item of the command and its owner and remembers both in the globals block; both become null when the
// host has no such plug-in.
void CacheFindFontMenuItem();

// Brings up the dialog, searching for the menu item first unless it is known. Does nothing when there is none.
void DisplayFindFontDialog();
