// Which entries are under way, one called inside the other.
//
// Thread: main, but for EntryUnderWay.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "simhost/contract/GuardedCall.h"

namespace simhost::contract {

// What runs before each call begins. For the plug-in that is inside the entry already, and the library cannot be blamed
// for it yet.
void BeforeEachCall(void (*action)(const char* entry));

// Begins a call, which EndCall ends and takes away.
GuardedCall& BeginCall(const char* entry);
void EndCall();

struct CallUnderWay {
    std::string entry;
    int number = 0;                   // of the call of its entry, from 1; 0 for calls without guards
    std::vector<HWND> windowsBefore;  // that were visible when it began
};
// For whoever watches the windows; nothing while no entry is being called. Thread: any.
std::optional<CallUnderWay> EntryUnderWay();

// As long as it lives, calls of one entry are made without guards. One at a time.
class UnguardedCalls {
  public:
    explicit UnguardedCalls(const char* entry);
    ~UnguardedCalls();
    UnguardedCalls(const UnguardedCalls&) = delete;
    UnguardedCalls& operator=(const UnguardedCalls&) = delete;
};

}  // namespace simhost::contract
