// The folders that Windows knows by identifiers, of the user who runs this program.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <filesystem>

// Empty when there is none. With KF_FLAG_CREATE it is made first.
std::filesystem::path KnownFolder(const KNOWNFOLDERID& identifier, DWORD flags = 0);
