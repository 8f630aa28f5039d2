// The plug-in manager's suites that one operation acquires for a moment.
// Thread: main.
#pragma once

#include <cstddef>

#include "host/HostTypes.h"
#include "host/Messages.h"

constexpr const char* kSPBlocksSuite = "SP Blocks Suite";
constexpr std::int32_t kSPBlocksSuiteVersion = 2;

struct SPBlocksSuite {
    SPErr (*AllocateBlock)(std::size_t size, const char* debugName, void** block);  // 0; the caller frees *block
    SPErr (*FreeBlock)(void* block);                                                // 1
    void* unused2[1];                                                               // 2
};

constexpr const char* kSPPluginsSuite = "SP Plug-ins Suite";
constexpr std::int32_t kSPPluginsSuiteVersion = 6;

struct SPPluginsSuite {
    void* unused0[24];                                               // 0 to 23
    SPErr (*GetNamedPlugin)(const char* name, SPPluginRef* plugin);  // 24
    void* unused25[3];                                               // 25 to 27
};

constexpr const char* kSPInterfaceSuite = "SP Interface Suite";
constexpr std::int32_t kSPInterfaceSuiteVersion = 2;

struct SPInterfaceSuite {
    SPErr (*SendMessage)(SPPluginRef plugin, const char* caller, const char* selector, void* message,
                         SPErr* result);                                 // 0
    SPErr (*SetupMessageData)(SPPluginRef plugin, SPMessageData* data);  // 1
    void* unused2[2];                                                    // 2 to 3
};
