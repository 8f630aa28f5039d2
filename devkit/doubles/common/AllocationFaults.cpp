#include "doubles/common/AllocationFaults.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "doubles/common/ImportPatch.h"
#include "doubles/common/OwnMemory.h"

namespace {

// Set at the first use, for the rest of the process.
DWORD sThread = 0;
void* (*sMalloc)(std::size_t) = nullptr;
void (*sFree)(void*) = nullptr;

std::ptrdiff_t sLive = 0;
std::size_t sMade = 0;
std::size_t sUntilFailure = 0;  // 0: none is to fail

bool Counts() { return GetCurrentThreadId() == sThread && !OwnMemory::IsMarked(); }

void* CountedMalloc(std::size_t size) {
    if (!Counts()) {
        return sMalloc(size);
    }
    if (sUntilFailure != 0 && --sUntilFailure == 0) {
        return nullptr;
    }
    void* const block = sMalloc(size);
    if (block != nullptr) {
        ++sLive;
        ++sMade;
    }
    return block;
}

void CountedFree(void* block) {
    if (block != nullptr && Counts()) {
        --sLive;
    }
    sFree(block);
}

// Each original is kept before its patch is in place. The patches are never taken out: whatever ends with the process
// may still give memory back.
void Watch() {
    if (sThread != 0) {
        return;
    }
    sThread = GetCurrentThreadId();
    const HMODULE program = GetModuleHandleW(nullptr);
    sMalloc = reinterpret_cast<decltype(sMalloc)>(ImportedFunction(program, "malloc"));
    sFree = reinterpret_cast<decltype(sFree)>(ImportedFunction(program, "free"));
    if (sMalloc == nullptr || sFree == nullptr) {
        std::fputs("AllocationFaults: the program does not import malloc and free\n", stderr);
        std::_Exit(1);
    }
    ReplaceImport(program, "malloc", AsReplacement(CountedMalloc));
    ReplaceImport(program, "free", AsReplacement(CountedFree));
}

}  // namespace

std::ptrdiff_t LiveAllocations() noexcept {
    Watch();
    return sLive;
}

std::size_t AllocationsMade() noexcept {
    Watch();
    return sMade;
}

FailingAllocation::FailingAllocation(std::size_t nth) noexcept {
    Watch();
    sUntilFailure = nth;
}

FailingAllocation::~FailingAllocation() { sUntilFailure = 0; }

bool FailingAllocation::HasHappened() const noexcept { return sUntilFailure == 0; }
