#include "simhost/contract/CallerState.h"

#include <windows.h>

#include <xmmintrin.h>

namespace simhost::contract {

namespace {

// The lower six bits tell what has happened since they were cleared.
constexpr std::uint32_t kControlBits = 0xFFC0;

std::wstring CurrentFolder() {
    std::wstring folder(GetCurrentDirectoryW(0, nullptr), L'\0');
    folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
    return folder;
}

}  // namespace

CallerState CallerState::Now() { return {CurrentFolder(), _mm_getcsr() & kControlBits, GetErrorMode()}; }

}  // namespace simhost::contract
