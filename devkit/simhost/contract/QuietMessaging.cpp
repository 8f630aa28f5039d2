#include "simhost/contract/QuietMessaging.h"

#include <windows.h>

#include <cstdint>

namespace simhost::contract {

PlugPlugState* QuietMessaging() {
    static PlugPlugState sState = {GetModuleHandleW(nullptr),
                                   [](const char*) -> std::int32_t { return 0; },
                                   [](const char*) -> std::int32_t { return 0; },
                                   [](const char*, PlugPlugListener, void*) -> std::int32_t { return 0; },
                                   [](const char*, PlugPlugListener, void*) -> std::int32_t { return 0; },
                                   [](const PlugPlugEvent*) -> std::int32_t { return 0; }};
    return &sState;
}

}  // namespace simhost::contract
