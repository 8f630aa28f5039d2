#include "simhost/contract/FreeWatch.h"

#include <cstring>

#include "doubles/common/CompilerSupport.h"
#include "simhost/contract/GuardedMemory.h"
#include "simhost/contract/ReplacedImport.h"

namespace simhost::contract {

namespace {

// The functions that were replaced, as the library had them: which C runtime is behind them is its own affair.
void(__cdecl* sFree)(void*) = nullptr;
void*(__cdecl* sReallocate)(void*, size_t) = nullptr;
BOOL(WINAPI* sHeapFree)(HANDLE, DWORD, LPVOID) = nullptr;
LPVOID(WINAPI* sHeapReAlloc)(HANDLE, DWORD, LPVOID, SIZE_T) = nullptr;
HLOCAL(WINAPI* sLocalFree)(HLOCAL) = nullptr;
HGLOBAL(WINAPI* sGlobalFree)(HGLOBAL) = nullptr;
void(WINAPI* sTaskMemFree)(LPVOID) = nullptr;

void __cdecl WatchedFree(void* memory) {
    if (!GuardedMemory::NoteFreed(memory, QUORVEL_CALLER_ADDRESS)) {
        sFree(memory);
    }
}

// The new block is empty: how much of the old one there is to copy, only its owner knows.
void* __cdecl WatchedReallocate(void* memory, size_t size) {
    if (!GuardedMemory::NoteFreed(memory, QUORVEL_CALLER_ADDRESS)) {
        return sReallocate(memory, size);
    }
    void* const block = sReallocate(nullptr, size);
    return block == nullptr ? nullptr : std::memset(block, 0, size);
}

BOOL WINAPI WatchedHeapFree(HANDLE heap, DWORD flags, LPVOID memory) {
    return GuardedMemory::NoteFreed(memory, QUORVEL_CALLER_ADDRESS) ? TRUE : sHeapFree(heap, flags, memory);
}

LPVOID WINAPI WatchedHeapReAlloc(HANDLE heap, DWORD flags, LPVOID memory, SIZE_T size) {
    return GuardedMemory::NoteFreed(memory, QUORVEL_CALLER_ADDRESS) ? HeapAlloc(heap, flags | HEAP_ZERO_MEMORY, size)
                                                                    : sHeapReAlloc(heap, flags, memory, size);
}

HLOCAL WINAPI WatchedLocalFree(HLOCAL memory) {
    return GuardedMemory::NoteFreed(memory, QUORVEL_CALLER_ADDRESS) ? nullptr : sLocalFree(memory);
}

HGLOBAL WINAPI WatchedGlobalFree(HGLOBAL memory) {
    return GuardedMemory::NoteFreed(memory, QUORVEL_CALLER_ADDRESS) ? nullptr : sGlobalFree(memory);
}

void WINAPI WatchedTaskMemFree(LPVOID memory) {
    if (!GuardedMemory::NoteFreed(memory, QUORVEL_CALLER_ADDRESS)) {
        sTaskMemFree(memory);
    }
}

}  // namespace

void WatchFrees(HMODULE library) {
    ReplaceKept(library, "free", &sFree, &WatchedFree);
    ReplaceKept(library, "realloc", &sReallocate, &WatchedReallocate);
    ReplaceKept(library, "HeapFree", &sHeapFree, &WatchedHeapFree);
    ReplaceKept(library, "HeapReAlloc", &sHeapReAlloc, &WatchedHeapReAlloc);
    ReplaceKept(library, "LocalFree", &sLocalFree, &WatchedLocalFree);
    ReplaceKept(library, "GlobalFree", &sGlobalFree, &WatchedGlobalFree);
    ReplaceKept(library, "CoTaskMemFree", &sTaskMemFree, &WatchedTaskMemFree);
}

}  // namespace simhost::contract
