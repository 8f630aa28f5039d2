// Holds the plug-in to the rule that the host's state is as it was when it returns. Whoever else has his turn in
// between, the PluginCore for example, is not held against it.
//
// Thread: any; each has its own watches.
#pragma once

#include <string>
#include <vector>

#include "simhost/checks/HostState.h"

namespace simhost {

// From the moment before the plug-in is called to the one after. Watches may lie within each other; what the inner one
// has told, the outer one does not tell again.
class HostStateWatch {
  public:
    HostStateWatch();
    HostStateWatch(const HostStateWatch&) = delete;
    HostStateWatch& operator=(const HostStateWatch&) = delete;
    ~HostStateWatch();

    // What has changed since the beginning or the last call. No watch around this one tells it again.
    std::vector<HostStateChange> TakeChanges();
    // Tells it under the rule "host-state", `where` first.
    void Check(const std::string& where);

    // To all watches of this thread: these changes are somebody else's.
    static void Excuse(const HostState& before, const HostState& now);

  private:
    HostState mBefore;
    HostStateWatch* mOuter;
};

// While it lives, somebody else has his turn.
class OthersTurn {
  public:
    OthersTurn() = default;
    OthersTurn(const OthersTurn&) = delete;
    OthersTurn& operator=(const OthersTurn&) = delete;
    ~OthersTurn() { HostStateWatch::Excuse(mBefore, HostState::Now()); }

  private:
    HostState mBefore = HostState::Now();
};

}  // namespace simhost
