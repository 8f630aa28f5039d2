// One exported entry that does nothing and answers 0. The arguments do not matter to a function that reads none.
#pragma once

#include <cstdint>

#define EXPORT_ENTRY(name) \
    extern "C" __declspec(dllexport) std::int32_t name() { return 0; }
