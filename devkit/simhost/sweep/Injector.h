// The one place that counts the fallible calls of a run, and decides which of them fail.
//
// Thread: main. Calls of other threads are not counted and do not fail.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simhost/sweep/Fault.h"

namespace simhost::sweep {

// A fallible call, as it is told apart from others.
struct CountedCall {
    std::string operation;               // "AI Menu Suite/AddMenuItem", "CreateFileW", "malloc"
    std::vector<std::uint32_t> returns;  // where in the plug-in its callers go on, from its base; the innermost first
};

class Injector {
  public:
    // A run of the plug-in begins, in which this fault happens, if any. `records`: the calls are kept, with the places
    // in the plug-in that they came from.
    void Begin(HMODULE plugin, std::optional<Fault> fault, bool records);
    // Nothing is counted and nothing fails any more.
    void End();

    // Counts a call; whether it is to fail.
    bool Fails(Kind kind, std::string_view operation);
    // Of the fault that is played.
    bool IsFilled() const { return mFault && mFault->mode == Mode::kFilled; }

    HMODULE Plugin() const { return mPlugin; }
    std::size_t Count(Kind kind) const { return mCounts[static_cast<std::size_t>(kind)]; }
    // Those of the kind so far, when they are recorded.
    const std::vector<CountedCall>& Calls(Kind kind) const { return mCalls[static_cast<std::size_t>(kind)]; }
    // How often each operation has failed.
    const std::map<std::string, std::int64_t>& Failures() const { return mFailures; }
    // Where in the plug-in this is called from; empty unless calls are recorded.
    std::vector<std::uint32_t> Returns() const;

  private:
    HMODULE mPlugin = nullptr;
    std::uint32_t mPluginSize = 0;
    DWORD mThread = 0;  // 0: nothing is counted
    bool mRecords = false;
    std::optional<Fault> mFault;
    std::array<std::size_t, kKinds> mCounts{};
    std::array<std::vector<CountedCall>, kKinds> mCalls;
    std::map<std::string, std::int64_t> mFailures;
};

// The one of this process.
Injector& TheInjector();

}  // namespace simhost::sweep
