// The libraries that are built for the tests of the loading.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

#include "support/Log.h"
#include "support/TemporaryFolder.h"

// Of those that have a version.
inline const std::string kVersion = "build \xE2\x82\xAC 7";

inline std::string Library(const std::string& name) { return (TestProgramFolder() / "libraries" / name).string(); }

// As the log shows an address.
inline std::string Hex(const void* address) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08x", static_cast<unsigned>(Low32(address)));
    return text;
}
