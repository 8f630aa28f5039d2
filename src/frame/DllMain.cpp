#include <windows.h>

#include "support/CompilerSupport.h"
#include "support/Log.h"
#include "support/LogSink.h"
#include "support/UntilUnloaded.h"

namespace {

void LogLoaderCall(const void* module, const char* reason, const void* reserved) {
    LogMessage(kLogNote,
               "QuorvelTypeAgentAICS?.aip DllMain(hModule 0x%08x, reason %s, lpReserved 0x%08x) returning TRUE",
               Low32(module), reason, Low32(reserved));
}

}  // namespace

// No header of ours declares it: Windows finds it by its name.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

// Windows calls it with the loader's lock held. It writes a log line, and frees the plug-in's objects and the C++
// runtime's own memory when the library alone is unloaded. It loads no library and does not wait.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
    switch (reason) {
        case DLL_PROCESS_ATTACH:
            LogLoaderCall(module, "DLL_PROCESS_ATTACH", reserved);
            break;
        case DLL_PROCESS_DETACH:
            LogLoaderCall(module, "DLL_PROCESS_DETACH", reserved);
            // Null when the library alone is unloaded. At the end of the process nothing is touched: late calls may
            // still need it.
            if (reserved == nullptr) {
                ModuleObject::DestroyAll();
                ReleaseRuntimeMemory();
            }
            EndLog(reserved != nullptr);
            break;
        default:
            // DLL_THREAD_ATTACH and DLL_THREAD_DETACH: not worth a line.
            break;
    }
    return TRUE;
}
