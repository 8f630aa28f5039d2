// Variables of threads. GCC reaches them through a function of its own library, which takes memory at a thread's first
// access, ends the process when there is none, and leaves a lock and a thread-local index of Windows behind each time
// the module is unloaded. The C++ runtime needs such a variable to throw, std::bad_alloc above all. This is that
// function for the plug-in: the thread that loads the module, which is the one that messages come on, has its room from
// the start, and a few other threads have one in reserve for when memory has run out.
//
// Thread: any; nothing waits for another thread, which may have been ended in the middle of anything.
#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

// The names are the compiler's own.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreserved-identifier"
#pragma clang diagnostic ignored "-Wmissing-variable-declarations"
#pragma clang diagnostic ignored "-Wunused-const-variable"
#endif

namespace {

constexpr std::size_t kSlotSize = 16;  // and the greatest alignment
constexpr std::size_t kSlots = 32;     // the runtime's own variables need three; threads that race for one lose some
constexpr std::size_t kReserved = 8;

// What the compiler makes of each variable.
struct Variable {
    std::size_t size;
    std::size_t alignment;
    std::uintptr_t place;      // 0 at first; then the number of its first slot, from 1
    const void* initialValue;  // null for zeros
};

// The variables of one thread.
struct Room {
    std::uint32_t initialized = 0;  // a bit for each first slot
    alignas(kSlotSize) unsigned char slots[kSlots * kSlotSize] = {};
};

struct ReservedRoom {
    std::atomic<DWORD> thread = 0;  // 0 while it is free
    Room room;
};

DWORD sIndex = TLS_OUT_OF_INDEXES;
Room sRoomOfLoader;
std::array<ReservedRoom, kReserved> sReserve;
std::atomic<std::uintptr_t> sNextPlace = 1;

std::uintptr_t TakePlace(const Variable& variable) {
    const std::uintptr_t slots = (variable.size + kSlotSize - 1) / kSlotSize;
    const std::uintptr_t place = sNextPlace.fetch_add(slots);
    if (place + slots > kSlots + 1 || variable.alignment > kSlotSize) {
        // One that there is no room for: seen by whoever adds it.
        std::abort();
    }
    return place;
}

std::uintptr_t PlaceOf(Variable& variable) {
    const std::atomic_ref<std::uintptr_t> place(variable.place);
    std::uintptr_t found = place.load();
    if (found == 0) {
        const std::uintptr_t taken = TakePlace(variable);
        // Where another thread was quicker, its place counts and ours stays empty.
        if (place.compare_exchange_strong(found, taken)) {
            found = taken;
        }
    }
    return found;
}

// Null when the thread has none.
ReservedRoom* ReserveOf(DWORD thread) {
    for (ReservedRoom& reserved : sReserve) {
        if (reserved.thread.load() == thread) {
            return &reserved;
        }
    }
    return nullptr;
}

// Nobody calls the plug-in on another thread; should more than a few do so when there is no memory, the process ends,
// as with the compiler's own function.
Room& TakeReserve(DWORD thread) {
    for (ReservedRoom& reserved : sReserve) {
        DWORD nobody = 0;
        if (reserved.thread.compare_exchange_strong(nobody, thread)) {
            reserved.room = Room();
            return reserved.room;
        }
    }
    std::abort();
}

Room& NewRoom() {
    const DWORD thread = GetCurrentThreadId();
    if (ReservedRoom* const reserved = ReserveOf(thread)) {
        return reserved->room;
    }
    void* const memory = HeapAlloc(GetProcessHeap(), 0, sizeof(Room));
    if (memory == nullptr) {
        return TakeReserve(thread);
    }
    // It may need memory as well.
    if (TlsSetValue(sIndex, memory) == 0) {
        HeapFree(GetProcessHeap(), 0, memory);
        return TakeReserve(thread);
    }
    return *new (memory) Room;
}

Room& RoomOfThread() {
    if (sIndex == TLS_OUT_OF_INDEXES) {
        return sRoomOfLoader;
    }
    // Reading it sets the last error, which the code around the access may still want.
    const DWORD error = GetLastError();
    auto* const room = static_cast<Room*>(TlsGetValue(sIndex));
    Room& found = room != nullptr ? *room : NewRoom();
    SetLastError(error);
    return found;
}

void ReleaseRoomOfThread() {
    if (sIndex == TLS_OUT_OF_INDEXES) {
        return;
    }
    if (ReservedRoom* const reserved = ReserveOf(GetCurrentThreadId())) {
        reserved->thread = 0;
    }
    auto* const room = static_cast<Room*>(TlsGetValue(sIndex));
    if (room != nullptr && room != &sRoomOfLoader) {
        HeapFree(GetProcessHeap(), 0, room);
        TlsSetValue(sIndex, nullptr);
    }
}

void TakeIndex() {
    sIndex = TlsAlloc();
    if (sIndex != TLS_OUT_OF_INDEXES && TlsSetValue(sIndex, &sRoomOfLoader) == 0) {
        TlsFree(sIndex);
        sIndex = TLS_OUT_OF_INDEXES;
    }
}

// Windows calls it around DllMain. Without an index the loading thread's room serves all.
void WINAPI OnLoaderEvent(PVOID /*module*/, DWORD reason, PVOID reserved) {
    if (reason == DLL_PROCESS_ATTACH) {
        TakeIndex();
    } else if (reason == DLL_THREAD_DETACH) {
        ReleaseRoomOfThread();
    } else if (reason == DLL_PROCESS_DETACH && reserved == nullptr && sIndex != TLS_OUT_OF_INDEXES) {
        ReleaseRoomOfThread();
        TlsFree(sIndex);
        sIndex = TLS_OUT_OF_INDEXES;
    }
}

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __emutls_get_address(Variable* variable);

// Where Windows finds the calls to make when threads come and go.
__attribute__((section(".CRT$XLD"), used)) extern const PIMAGE_TLS_CALLBACK kOnLoaderEvent = OnLoaderEvent;
}

void* __emutls_get_address(Variable* variable) {
    const std::uintptr_t place = PlaceOf(*variable);
    Room& room = RoomOfThread();
    unsigned char* const slot = room.slots + (place - 1) * kSlotSize;
    const std::uint32_t bit = std::uint32_t{1} << (place - 1);
    if ((room.initialized & bit) == 0) {
        room.initialized |= bit;
        if (variable->initialValue != nullptr) {
            std::memcpy(slot, variable->initialValue, variable->size);
        }
    }
    return slot;
}
// NOLINTEND(bugprone-reserved-identifier)

#if defined(__clang__)
#pragma clang diagnostic pop
#endif
