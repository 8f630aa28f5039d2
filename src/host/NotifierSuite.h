#pragma once

#include "host/HostTypes.h"

constexpr const char* kAINotifierSuite = "AI Notifier Suite";
constexpr std::int32_t kAINotifierSuiteVersion = 4;

// Thread: main.
struct AINotifierSuite {
    // `name` is the plug-in's own name for the registration; the handle stays the host's.
    AIErr (*AddNotifier)(SPPluginRef self, const char* name, const char* type, AINotifierHandle* notifier);  // 0
    void* unused1[8];                                                                                        // 1 to 8
};
