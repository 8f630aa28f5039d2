// What libFuzzer calls; compiled once for each target, whose function is QUORVEL_FUZZ_TARGET.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        QUORVEL_FUZZ_TARGET({reinterpret_cast<const char*>(data), size});
    } catch (const Disagreement& disagreement) {
        std::fprintf(stderr, "Disagreement: %s\n", disagreement.what());
        std::abort();
    }
    return 0;
}
