// Breakpoints where a process or a thread of it is ended from inside: everything that ends one of its own will, exit(),
// abort() and TerminateProcess() among it, comes by here, and its stack still tells who wanted it.
// Thread: the one that handles the process's debug events.
#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace simhost {

enum class EndKind { kProcess, kThread };

struct EndAttempt {
    EndKind kind;
    std::uint32_t code;  // the exit code
};

class EndTraps {
  public:
    explicit EndTraps(HANDLE process) : mProcess(process) {}

    // Once the process's loader has done its work, before the program begins.
    void Set();
    // Nothing more is stopped.
    void Remove();

    // Whether the event was made by the traps, so that the process goes on as if there were none.
    bool Handles(const DEBUG_EVENT& event, HANDLE thread);
    // What the thread that ran into a trap was about to do, when it concerns this process or one of its threads.
    // Once for each event that was handled.
    std::optional<EndAttempt> TakeAttempt();

  private:
    struct Trap {
        void* address;
        unsigned char original;
        bool (*concerns)(HANDLE process, const CONTEXT& context);
        EndAttempt (*read)(const CONTEXT& context);
    };

    // Whether the thread was stepping over a trap, which is back in its place then.
    bool HasStepped(DWORD thread);
    void Write(const Trap& trap, unsigned char byte) const;

    HANDLE mProcess;
    std::vector<Trap> mTraps;
    // By the thread, the trap whose first instruction it is about to execute: the breakpoint is out until then, and the
    // trap may be removed meanwhile. Threads may end at the same time.
    std::map<DWORD, void*> mStepping;
    std::optional<EndAttempt> mAttempt;
};

}  // namespace simhost
