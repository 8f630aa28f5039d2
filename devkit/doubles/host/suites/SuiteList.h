// Which suites the host offers, in which version and with how many slots. Written independently of the plug-in's own
// list, so that the double refuses what is wrong there.
//
// Thread: any.
#pragma once

#include <cstdint>
#include <span>

namespace simhost {

struct SuiteRow {
    const char* name;
    std::int32_t version;
    int slots;
};

std::span<const SuiteRow> AllSuites();
// Those that the plug-in holds from its start-up to its shut-down, in the order in which it asks for them.
std::span<const SuiteRow> HeldSuites();

}  // namespace simhost
