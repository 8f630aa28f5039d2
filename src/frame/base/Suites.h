// The suites that the plug-in holds as long as it runs: acquired together, counted, released together. Their variables
// are those of host/HeldSuites.h. The basic suite must be known.
// Thread: main.
#pragma once

#include <cstdint>
#include <span>

struct SuiteRow {
    const char* name;
    std::int32_t version;
    const void** target;  // receives the suite; null again after release
};

// The 98 rows in the order in which they are acquired and released.
// Lifetime: as long as the plug-in is loaded.
std::span<const SuiteRow> SuiteTable();

// Acquires every row unless the table is held already. At the first refusal stops, logs the row and returns the host's
// code: the suites acquired so far stay held and are acquired once more by the next call.
std::int32_t AcquireSuites();

// Releases every row that is held, when the use count is 1; otherwise only counts down, from 0 to 4294967295: a table
// that was released without being held is never acquired again. At the first refusal returns
// the host's code, with the rest of the rows held and the count at 1.
std::int32_t ReleaseSuites();

// Whether the whole table is held.
bool SuitesAreHeld();
