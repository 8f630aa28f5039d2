// The libraries that the tests of the loading load: variants of the PluginCore's double.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

#include "support/files/TemporaryFolder.h"
#include "support/Log.h"

// What PluginCoreOfPrivateBuild.dll says, and those that lack entries.
inline const std::string kVersion = "build \xE2\x82\xAC 7";
inline const std::string kVariantVersion = "substitute " QUORVEL_VERSION;

inline std::string Library(const std::string& name) {
    return (TestProgramFolder().parent_path() / "bin" / name).string();
}

// As the log shows an address.
inline std::string Hex(const void* address) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08x", static_cast<unsigned>(Low32(address)));
    return text;
}
