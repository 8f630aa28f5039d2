// Objects that live as long as the library: one as the plug-in's are, and a plain one. Whoever is destroyed counts in a
// number, or ends the process with a code that tells of it.
#include <windows.h>

#include <cstddef>

#include "support/UntilUnloaded.h"

namespace {

struct Witness {
    int* count = nullptr;  // not owned
    UINT exitCode = 0;     // 0 while it does not matter

    Witness() = default;
    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;
    ~Witness() {
        if (count != nullptr) {
            ++*count;
        }
        if (exitCode != 0) {
            TerminateProcess(GetCurrentProcess(), exitCode);
        }
    }
};

const UntilUnloaded<Witness> sUntilUnloaded;
Witness sPlain;

}  // namespace

extern "C" __declspec(dllexport) int WatchUntilUnloaded(std::size_t exitCode) {
    sUntilUnloaded->exitCode = static_cast<UINT>(exitCode);
    return 0;
}

extern "C" __declspec(dllexport) int WatchPlain(std::size_t exitCode) {
    sPlain.exitCode = static_cast<UINT>(exitCode);
    return 0;
}

extern "C" __declspec(dllexport) void CountUntilUnloaded(int* count) { sUntilUnloaded->count = count; }
