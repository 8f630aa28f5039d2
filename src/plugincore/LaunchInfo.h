// The launch-info file that the core application leaves in an application-data folder.
// Thread: main.
#pragma once

#include <cstdint>
#include <string>

// Looks for the first line of the file that holds `key` and a value, and stores the value in `outValue`. Returns 0, or
// kLookupNotFound when the file cannot be opened or has no such line; `outValue` is then left alone.
std::int32_t ReadLaunchInfoValue(const std::string& folderName, const std::string& fileName, const std::string& key,
                                 std::string& outValue);

// Append the shell folder's path as UTF-8 to `out`, which is not cleared; on failure `out` stays as it was.
void GetLocalAppDataFolder(std::string& out);
void GetCommonAppDataFolder(std::string& out);
