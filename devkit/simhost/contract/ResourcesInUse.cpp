#include "simhost/contract/ResourcesInUse.h"

#include <windows.h>

#include <winternl.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace simhost::contract {

namespace {

struct HeapUse {
    long long blocks = 0;
    long long bytes = 0;
};

HeapUse HeapsInUse() {
    std::array<HANDLE, 64> heaps{};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    HeapUse use;
    for (DWORD i = 0; i < count && i < heaps.size(); ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry) != 0) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) {
                ++use.blocks;
                use.bytes += entry.cbData;
            }
        }
        HeapUnlock(heaps[i]);
    }
    return use;
}

// Also what was taken without a heap.
long long PagesInUse() {
    constexpr SIZE_T kPage = 4096;
    long long pages = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; VirtualQuery(at, &region, sizeof region) != 0;
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) {
            pages += static_cast<long long>(region.RegionSize / kPage);
        }
    }
    return pages;
}

// As Windows lays them out; the header does not have them.
struct SystemHandle {
    void* object;
    std::uintptr_t processId;
    std::uintptr_t handle;
    std::uint32_t access;
    std::uint16_t creatorIndex;
    std::uint16_t typeIndex;
    std::uint32_t attributes;
    std::uint32_t reserved;
};
struct SystemHandles {
    std::uintptr_t count;
    std::uintptr_t reserved;
    SystemHandle handles[1];
};

constexpr int kSystemHandles = 64;
constexpr auto kTooSmall = static_cast<NTSTATUS>(0xC0000004);

// Not GetProcessHandleCount, which always answers 0 in Wine.
long long HandlesInUse() {
    using Query = NTSTATUS(WINAPI*)(int, void*, ULONG, ULONG*);
    static const auto sQuery = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    // Kept: it must not count among the blocks.
    static std::vector<std::uintptr_t> sBuffer(std::size_t{1} << 16);
    const auto query = [] {
        return sQuery(kSystemHandles, sBuffer.data(), static_cast<ULONG>(sBuffer.size() * sizeof sBuffer[0]), nullptr);
    };
    while (query() == kTooSmall) {
        sBuffer.resize(sBuffer.size() * 2);
    }
    const auto* const all = reinterpret_cast<const SystemHandles*>(sBuffer.data());
    return std::count_if(all->handles, all->handles + all->count,
                         [](const SystemHandle& handle) { return handle.processId == GetCurrentProcessId(); });
}

long long ObjectsInUse() {
    return static_cast<long long>(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) +
           GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
}

}  // namespace

ResourcesInUse ResourcesInUse::Now() {
    const long long handles = HandlesInUse();
    const HeapUse heaps = HeapsInUse();
    return {heaps.blocks, heaps.bytes, PagesInUse(), handles, ObjectsInUse()};
}

ResourcesInUse operator-(const ResourcesInUse& after, const ResourcesInUse& before) {
    return {after.blocks - before.blocks, after.bytes - before.bytes, after.pages - before.pages,
            after.handles - before.handles, after.objects - before.objects};
}

ResourcesInUse Least(const ResourcesInUse& a, const ResourcesInUse& b) {
    return {std::min(a.blocks, b.blocks), std::min(a.bytes, b.bytes), std::min(a.pages, b.pages),
            std::min(a.handles, b.handles), std::min(a.objects, b.objects)};
}

}  // namespace simhost::contract
