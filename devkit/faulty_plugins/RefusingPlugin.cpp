// A plug-in that Windows cannot load: it says no itself.
#include <windows.h>

#include <cstdint>

extern "C" __declspec(dllexport) std::int32_t
    PluginMain(const char* /*caller*/, const char* /*selector*/, void* /*message*/) {
    return 0;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD /*reason*/, void* /*reserved*/) { return FALSE; }
