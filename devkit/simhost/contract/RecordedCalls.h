// The calls of the process, as they are told and written down.
//
// Thread: main.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "simhost/checks/PluginCoreCalls.h"
#include "simhost/report/CallJournal.h"

namespace simhost::contract {

struct RecordedCall {
    std::shared_ptr<PluginCoreCall> call;
    int number;         // of the call of its entry, from 1
    std::size_t place;  // among all calls of the process, from 0
};

// A call has its place from its beginning on.
RecordedCall RecordCall(const char* entry);

// Where calls are written as they happen.
CallJournal& Journal();

// Forgets all calls: the next ones are the first ones of their entries.
void ForgetCalls();

// Whether any entry was called so far.
bool WasAnyCalled();
// The calls since the last time, in the order in which they began.
std::vector<PluginCoreCall> TakeCalls();

}  // namespace simhost::contract
