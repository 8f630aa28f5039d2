// Whether the suite table may be acquired, and who gives it back.
//
// The table is acquired lazily, by every message until it is held. That is only sound while a later message is
// bound to release it. A started plug-in does so at shut-down. One that never started, or not with a usable PluginCore,
// does so with the host's closing message, "Shutdown" or "Unload". After either nothing is acquired until the next
// "Startup".
//
// Thread: main.
#pragma once

enum class MessageKind {
    kStartup,            // begins a run
    kClosingWithoutRun,  // "Shutdown" or "Unload" to a plug-in that is not started
    kOrdinary,
};

class SuiteLease {
  public:
    // Before a message is routed: acquires the table, or gives it back. A suite that the host refuses is not examined:
    // its user finds its variable null.
    void BeginMessage(MessageKind kind);

    // Shut-down of a started plug-in: releases the table as ReleaseSuites counts. What cannot be released is not tried
    // again.
    void EndRun();

  private:
    bool mIsOpen = true;  // whether the table may be acquired
};

// The one of the process.
// Lifetime: as long as the plug-in is loaded.
extern SuiteLease sSuiteLease;
