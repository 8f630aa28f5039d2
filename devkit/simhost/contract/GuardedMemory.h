// Memory that a library is given in place of the plug-in's: no page around it can be touched unnoticed. Whoever touches
// one is noted, with the place in its code; the page then becomes accessible and the library goes on, so that the run
// shows more than the first mistake.
//
//   | no access | canary | the bytes | no access ... |     of odd calls: the end is the end of a page
//   | no access | the bytes | canary | no access ... |     of even calls: the beginning is the beginning of a page
//
// On the other side, the rest of the page is filled with a canary, which Release checks: what is written there is
// noticed too, what is read is not. After Release nothing of it is accessible; the oldest blocks make room for new
// ones.
//
// Thread: Lend, Release, Rewrite and TakeHits: main. The memory itself may be touched by any thread.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

namespace simhost::contract {

enum class Access { kReadWrite, kReadOnly };

// Who was lent a block, and as what. Copied; the texts must live as long as the process.
struct Loan {
    const char* entry = "";
    int call = 0;  // from 1
    const char* argument = "";
    Access access = Access::kReadWrite;
    bool isLasting = false;  // stays readable until the process ends: the contract allows keeping the pointer
};

enum class HitKind {
    kBehind,       // behind the last byte
    kInFront,      // in front of the first one
    kWritten,      // a write to what may only be read
    kAfterReturn,  // any use after Release
    kFreed,        // given to a function that frees memory
};

struct Hit {
    HitKind kind;
    Loan loan;
    bool isWrite;
    std::ptrdiff_t offset;  // of the byte from the first one
    std::size_t size;       // of the block
    const void* code;       // where in the library, if it is on the stack; null when not known
    DWORD thread;
};

class GuardedMemory {
  public:
    // Copies `size` bytes from `bytes`. Throws std::bad_alloc.
    static void* Lend(const void* bytes, std::size_t size, const Loan& loan);
    // For a lasting block, whose owner has changed the bytes: the library sees the new ones.
    static void Rewrite(void* block, const void* bytes);
    // Copies the bytes back into `out` when it is not null, and closes the block.
    static void Release(void* block, void* out);

    // Notes that `pointer` was given to a function that frees memory, when it lies in a block; false when it does not.
    static bool NoteFreed(const void* pointer, const void* code);

    // How often anything was noted: it takes its time, which is not the library's.
    static std::size_t HitsSoFar();

    // What was noted since the last call.
    static std::vector<Hit> TakeHits();

    // The library in which places are looked for.
    static void SetLibrary(HMODULE library);
};

}  // namespace simhost::contract
