// Which suites the host offers, in which version and with how many slots. Written out here without a look at the
// plug-in's own list, so that a mistake there is refused here.
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

}  // namespace simhost
