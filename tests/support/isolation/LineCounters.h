// In the build that counts which lines run (preset coverage), the counters are variables of the plug-in's code like any
// other: putting those back would empty them.
#pragma once

#ifdef QUORVEL_COVERAGE
// The names are those of the compiler's library.
extern "C" void __gcov_dump(void);   // NOLINT(bugprone-reserved-identifier)
extern "C" void __gcov_reset(void);  // NOLINT(bugprone-reserved-identifier)

// Adds the counters to the files where they are kept, and begins anew.
inline void SaveLineCounters() {
    __gcov_dump();
    __gcov_reset();
}
#else
inline void SaveLineCounters() {}
#endif
