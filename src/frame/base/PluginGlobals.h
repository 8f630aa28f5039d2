// The block that the host keeps for the plug-in between messages, and the state of the message being handled.
// Thread: main.
#pragma once

#include <string>

#include "host/Messages.h"

// Allocated by start-up through "SP Blocks Suite", freed by shut-down. Slot numbers count from 1.
struct PluginGlobals {
    void* unused1;                          // 1: not set by start-up
    std::string* text;                      // 2: owned by the block, empty; null when it could not be made
    void* unused3;                          // 3: not set by start-up
    SPPluginRef findFontOwner;              // 4: the plug-in that answers the host's Find Font command; null: not known
    AIMenuItemHandle findFontItem;          // 5: its menu item; null: not known
    SPPluginRef plugin;                     // 6: menus and notifiers are registered with it
    AINotifierHandle documentChanged;       // 7
    AINotifierHandle documentOpened;        // 8
    AINotifierHandle documentAboutToClose;  // 9
    AINotifierHandle documentClosed;        // 10
    AINotifierHandle documentNew;           // 11
    AINotifierHandle applicationStarted;    // 12
    AINotifierHandle applicationShutdown;   // 13
    AINotifierHandle menuChanged;           // 14
    AINotifierHandle documentSaved;         // 15
    AINotifierHandle documentSavedAs;       // 16
    AINotifierHandle fontListChanged;       // 17
    AITimerHandle idleTimer;                // 18
    AIFileFormatHandle fileFormat;          // 19: the format that is registered to see files before they open
};

// Copied from every message, set by start-up, cleared by shut-down; null while the plug-in is not started. The block
// is the plug-in's; the host only keeps the pointer between messages.
extern PluginGlobals* sGlobals;

// The block of the message being handled; the host's, stale between messages. Kept for debugging: the plug-in
// itself passes the message as an argument.
extern SPMessageData* sCurrentMessage;

// Gives a freshly allocated block its values: the plug-in's reference, a new empty text, and null handles. The host
// does not zero a block, and a notifier that is never added must not match a handle by chance. Slots 1 and 3 are left
// alone.
void InitializeGlobals(PluginGlobals& globals, SPPluginRef plugin);
