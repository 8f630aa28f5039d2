// Lets operations of the host's suites count, and fail when the injector says so.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <string_view>

namespace simhost::sweep {

// What an operation answers that fails: a code that nobody knows, 'FALT'.
inline constexpr std::int32_t kHostFault = 0x46414C54;

// Of the present host, until it is gone.
void InjectHostFaults();

// Whether the operation has a way to tell a failure. By its full name.
bool CanFail(std::string_view operation);

}  // namespace simhost::sweep
