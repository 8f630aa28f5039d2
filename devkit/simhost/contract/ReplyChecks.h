// What a reply promises: its text, its size, the bytes behind it, and its JSON.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <string>

#include "simhost/checks/PluginCoreCalls.h"

namespace simhost::contract {

// The plug-in's buffer, and what it held before the call.
struct LentText {
    std::string before;
    char* original;
    std::uint64_t capacity;
    std::uint64_t sizeBefore;
    std::uint64_t* size;  // null: the contract knows the capacity
};

// Once the call is answered. `number` is that of the call of its entry. Adds to the call what came back.
void CheckReply(const LentText& reply, PluginCoreCall& call, int number);

}  // namespace simhost::contract
