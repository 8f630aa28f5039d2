#include "EnvironmentVariable.h"

#include <windows.h>

std::wstring EnvironmentVariable(const wchar_t* name) {
    std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}
