// Loading a library and reading what it says about itself. Paths are in the ANSI code page, as Windows' narrow calls
// take them.
// Thread: main.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string>

// Loads the library; null when Windows cannot. In both cases copies the file's PrivateBuild text as UTF-8 into
// `versionOut` (`versionOutSize` bytes, terminated), which is left alone when the file has none.
HMODULE LoadLibraryWithVersion(const std::string& path, char* versionOut, std::size_t versionOutSize);

// Copies the text that `queryPath` names in the version resource of the file at `path` into `out`; `size` is its size
// in bytes. A longer text is cut, never within a surrogate pair. A path of 260 characters or more is cut too. Returns
// false, after a log line when there is no version resource, if there is no such text.
bool GetFileVersionString(const std::string& path, const wchar_t* queryPath, std::size_t size, wchar_t* out);

// The address of an exported function; null for a null module (in silence) or a name that the module lacks.
FARPROC GetProcAddressLogged(HMODULE module, const char* name);
