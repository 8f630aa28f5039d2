// Whether the suite table may be acquired, and who gives it back.
//
// The table is acquired lazily, by every message until it is held. That is only sound while somebody is left who will
// release it: a started plug-in does so at shut-down; one that never started, or not with a usable PluginCore, does so
// with the host's closing message ("Shutdown", or "Unload" that is allowed). After either, nothing is acquired until
// the next "Startup".
//
// Thread: main.
#pragma once

class SuiteLease {
  public:
    // "Startup" has come: messages may acquire the table from here on.
    void Open() noexcept { mIsOpen = true; }

    // To be called for every message. A suite that the host refuses is not examined: whoever needs it finds out.
    void AcquireIfOpen();

    // Shut-down of a started plug-in: releases the table as ReleaseSuites counts, and closes the lease.
    void EndRun();

    // A closing message to a plug-in that is not started: releases the table if it is held. Does nothing after EndRun:
    // what could not be released then is not tried again.
    void EndWithoutRun();

  private:
    bool mIsOpen = true;
};

// The one of the process. Lives as long as the plug-in is loaded.
extern SuiteLease sSuiteLease;
