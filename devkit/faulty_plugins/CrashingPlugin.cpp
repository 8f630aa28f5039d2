// A plug-in that crashes in its first message, before it has called anybody.
#include <cstdint>

namespace {

// Not known to the compiler, which would complain.
volatile std::uintptr_t sNowhere = 16;

}  // namespace

extern "C" __declspec(dllexport) std::int32_t PluginMain(const char*, const char*, void*) {
    *reinterpret_cast<volatile int*>(sNowhere) = 1;
    return 0;
}
