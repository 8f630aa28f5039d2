#include "simhost/contract/GuardedMemory.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <new>

#include "doubles/common/Thread.h"
#include "simhost/contract/CodeAddress.h"

namespace simhost::contract {

namespace {

constexpr std::size_t kPage = 4096;
// What Windows reserves at least; all that is left behind the bytes is without access.
constexpr std::size_t kGranularity = 65536;
constexpr unsigned char kCanary = 0xA5;
// Closed blocks are kept as long as there are fewer: a text of the last thousand calls that is used again is noticed.
constexpr std::size_t kBlocks = 2048;
constexpr std::size_t kHits = 256;

struct Block {
    unsigned char* base = nullptr;  // null: not in use
    std::size_t reserved = 0;
    std::size_t pages = 0;  // bytes between the pages without access
    unsigned char* bytes = nullptr;
    std::size_t size = 0;
    Loan loan;
    bool isClosed = false;
    bool isCanaryTold = false;  // somebody was seen to write to it

    unsigned char* FirstPage() const { return base + kPage; }
    unsigned char* PagesEnd() const { return FirstPage() + pages; }
    unsigned char* BytesEnd() const { return bytes + size; }
    unsigned char* End() const { return base + reserved; }
    bool Holds(const unsigned char* address) const { return base != nullptr && address >= base && address < End(); }
};

// All of it without destructors and without memory of the heap: an exception handler uses it.
Mutex sMutex;
std::array<Block, kBlocks> sBlocks;
std::size_t sNext = 0;
// How many blocks have a part in pages of this number, cut to the table's size: each free of the library asks whether
// its address lies in a block, and nearly none does.
std::array<int, 65536> sBlocksAt;
std::array<Hit, kHits> sHits;
std::size_t sHitCount = 0;
std::size_t sHitsSoFar = 0;
HMODULE sLibrary = nullptr;

std::size_t RoundUp(std::size_t size, std::size_t unit) { return (size + unit - 1) / unit * unit; }

int& BlocksAt(const unsigned char* address) {
    return sBlocksAt[reinterpret_cast<std::uintptr_t>(address) / kGranularity % sBlocksAt.size()];
}

// `step`: 1 for a block that comes, -1 for one that goes.
void CountPlaces(const Block& block, int step) {
    for (const unsigned char* at = block.base; at < block.End(); at += kGranularity) {
        BlocksAt(at) += step;
    }
}

Block* Find(const void* address) {
    const auto* const byte = static_cast<const unsigned char*>(address);
    if (BlocksAt(byte) == 0) {
        return nullptr;
    }
    const auto found = std::find_if(sBlocks.begin(), sBlocks.end(), [&](const Block& b) { return b.Holds(byte); });
    return found == sBlocks.end() ? nullptr : &*found;
}

void Note(HitKind kind, const Block& block, const void* address, bool isWrite, const void* code) {
    ++sHitsSoFar;
    if (sHitCount < kHits) {
        sHits[sHitCount++] = {
            kind, block.loan,          isWrite, static_cast<const unsigned char*>(address) - block.bytes, block.size,
            code, GetCurrentThreadId()};
    }
}

// Of pages of which some have no memory yet.
void MakeAccessible(unsigned char* from, const unsigned char* to) {
    const auto size = static_cast<std::size_t>(to - from);
    DWORD before = 0;
    VirtualAlloc(from, size, MEM_COMMIT, PAGE_READWRITE);
    VirtualProtect(from, size, PAGE_READWRITE, &before);
}

// The zone that was hit becomes accessible, so that each zone of a block is noted once.
void NoteAndOpen(Block& block, const unsigned char* address, bool isWrite, const void* code) {
    if (block.isClosed) {
        Note(HitKind::kAfterReturn, block, address, isWrite, code);
        MakeAccessible(block.base, block.End());
    } else if (address < block.FirstPage()) {
        Note(HitKind::kInFront, block, address, isWrite, code);
        MakeAccessible(block.base, block.FirstPage());
    } else if (address >= block.PagesEnd()) {
        Note(HitKind::kBehind, block, address, isWrite, code);
        MakeAccessible(block.PagesEnd(), block.End());
    } else {
        // Only what may not be written is hit there.
        const HitKind kind = address < block.bytes         ? HitKind::kInFront
                             : address >= block.BytesEnd() ? HitKind::kBehind
                                                           : HitKind::kWritten;
        Note(kind, block, address, isWrite, code);
        MakeAccessible(block.FirstPage(), block.PagesEnd());
        block.isCanaryTold = true;
    }
}

bool IsGuarded(const unsigned char* address) {
    const std::lock_guard lock(sMutex);
    return Find(address) != nullptr;
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION || record.NumberParameters < 2) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    const auto* const address = reinterpret_cast<const unsigned char*>(record.ExceptionInformation[1]);
    if (!IsGuarded(address)) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    // Not under the lock: it waits for the loader, which may wait for a thread that comes here.
    const void* const code = PlaceWithin(sLibrary, *pointers->ContextRecord);
    const std::lock_guard lock(sMutex);
    Block* const block = Find(address);
    if (block == nullptr) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    NoteAndOpen(*block, address, record.ExceptionInformation[0] != 0, code);
    return EXCEPTION_CONTINUE_EXECUTION;
}

// Once, for good: blocks may be touched until the process ends.
void InstallHandler() {
    static void* const sHandler = AddVectoredExceptionHandler(1, &OnException);
    if (sHandler == nullptr) {
        throw std::bad_alloc();
    }
}

Block& TakeBlock() {
    // The oldest one; one that is still lent is passed over.
    for (std::size_t tried = 0; tried < kBlocks; ++tried) {
        Block& block = sBlocks[sNext];
        sNext = (sNext + 1) % kBlocks;
        if (block.base == nullptr || block.isClosed) {
            if (block.base != nullptr) {
                CountPlaces(block, -1);
                VirtualFree(block.base, 0, MEM_RELEASE);
            }
            block = Block();
            return block;
        }
    }
    throw std::bad_alloc();
}

// On the side that has one: from the bytes away, for what is next to them is written first.
void CheckCanary(const Block& block) {
    if (block.isCanaryTold) {
        return;
    }
    for (const unsigned char* at = block.bytes; at > block.FirstPage(); --at) {
        if (at[-1] != kCanary) {
            Note(HitKind::kInFront, block, at - 1, true, nullptr);
            return;
        }
    }
    for (const unsigned char* at = block.BytesEnd(); at < block.PagesEnd(); ++at) {
        if (*at != kCanary) {
            Note(HitKind::kBehind, block, at, true, nullptr);
            return;
        }
    }
}

// Keeps the contents, for a library that goes on using them.
void Close(Block& block) {
    DWORD before = 0;
    VirtualFree(block.base, kPage, MEM_DECOMMIT);
    VirtualFree(block.PagesEnd(), static_cast<std::size_t>(block.End() - block.PagesEnd()), MEM_DECOMMIT);
    VirtualProtect(block.FirstPage(), block.pages, PAGE_NOACCESS, &before);
    block.isClosed = true;
}

}  // namespace

void GuardedMemory::SetLibrary(HMODULE library) { sLibrary = library; }

void* GuardedMemory::Lend(const void* bytes, std::size_t size, const Loan& loan) {
    InstallHandler();
    const std::size_t pages = std::max(RoundUp(size, kPage), kPage);
    const std::size_t reserved = RoundUp(pages + 2 * kPage, kGranularity);
    auto* const base = static_cast<unsigned char*>(VirtualAlloc(nullptr, reserved, MEM_RESERVE, PAGE_NOACCESS));
    if (base == nullptr || VirtualAlloc(base + kPage, pages, MEM_COMMIT, PAGE_READWRITE) == nullptr) {
        throw std::bad_alloc();
    }
    const bool isAtBeginning = loan.call % 2 == 0 && !loan.isLasting;
    unsigned char* const first = base + kPage + (isAtBeginning ? 0 : pages - size);
    std::memset(base + kPage, kCanary, pages);
    if (size != 0) {
        std::memcpy(first, bytes, size);
    }
    if (loan.access == Access::kReadOnly) {
        DWORD before = 0;
        VirtualProtect(base + kPage, pages, PAGE_READONLY, &before);
    }
    const std::lock_guard lock(sMutex);
    Block& block = TakeBlock();
    block = {base, reserved, pages, first, size, loan, false, false};
    CountPlaces(block, 1);
    return first;
}

void GuardedMemory::Rewrite(void* block, const void* bytes) {
    // This thread alone changes the table.
    const Block* const lent = Find(block);
    DWORD before = 0;
    VirtualProtect(lent->FirstPage(), lent->pages, PAGE_READWRITE, &before);
    std::memcpy(lent->bytes, bytes, lent->size);
    VirtualProtect(lent->FirstPage(), lent->pages, PAGE_READONLY, &before);
}

void GuardedMemory::Release(void* block, void* out) {
    // This thread alone changes the table.
    Block* const lent = Find(block);
    if (lent == nullptr || lent->isClosed) {
        return;
    }
    // Not under the lock: a mistake of the caller's goes through the exception handler as well.
    if (out != nullptr && lent->size != 0) {
        std::memcpy(out, lent->bytes, lent->size);
    }
    const std::lock_guard lock(sMutex);
    CheckCanary(*lent);
    Close(*lent);
}

bool GuardedMemory::NoteFreed(const void* pointer, const void* code) {
    const std::lock_guard lock(sMutex);
    const Block* const block = Find(pointer);
    if (block != nullptr) {
        Note(HitKind::kFreed, *block, pointer, false, code);
    }
    return block != nullptr;
}

std::size_t GuardedMemory::HitsSoFar() {
    const std::lock_guard lock(sMutex);
    return sHitsSoFar;
}

std::vector<Hit> GuardedMemory::TakeHits() {
    const std::lock_guard lock(sMutex);
    std::vector<Hit> hits(sHits.begin(), sHits.begin() + static_cast<std::ptrdiff_t>(sHitCount));
    sHitCount = 0;
    return hits;
}

}  // namespace simhost::contract
