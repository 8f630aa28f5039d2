// A probe's own process: `simhost probe`, started by RunInProcess.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace simhost::contract {

// Runs the probe of that name; what it finds goes into the contract's book. After so many seconds it makes no further
// call. Exit code 0.
int RunProbe(const std::string& name, const std::filesystem::path& file, std::int64_t seconds);

}  // namespace simhost::contract
