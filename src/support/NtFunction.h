// Functions of ntdll.dll that Windows has and no import library of it names. Thread: any.
#pragma once

#include <windows.h>

// Null when this Windows has none of the name.
template <class Function>
Function NtFunction(const char* name) noexcept {
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    return ntdll == nullptr ? nullptr
                            : reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(ntdll, name)));
}
