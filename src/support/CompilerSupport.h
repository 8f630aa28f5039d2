// The one place for what a single compiler understands.
#pragma once

#include <cstddef>  // defines __GLIBCXX__

// Lets GCC and clang check the arguments of a call against its format, as Windows' own formatter reads it.
#if defined(__clang__)
#define QUORVEL_PRINTF_FORMAT(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#elif defined(__GNUC__)
#define QUORVEL_PRINTF_FORMAT(formatIndex, firstArgument) __attribute__((format(ms_printf, formatIndex, firstArgument)))
#else
#define QUORVEL_PRINTF_FORMAT(formatIndex, firstArgument)
#endif

// Frees the memory that the C++ runtime of this module keeps for exceptions; without it every load and unload of the
// module leaks one block. Only for the moment when the module is unloaded.
#if defined(__GLIBCXX__)
// The name is the C++ runtime's own.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreserved-identifier"
#endif
namespace __gnu_cxx {
void __freeres();
}
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
inline void ReleaseRuntimeMemory() { __gnu_cxx::__freeres(); }
#else
inline void ReleaseRuntimeMemory() {}
#endif
