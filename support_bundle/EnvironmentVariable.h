#pragma once

#include <string>

// Of any length; empty when there is none.
std::wstring EnvironmentVariable(const wchar_t* name);
