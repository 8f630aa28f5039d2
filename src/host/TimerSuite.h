#pragma once

#include "host/HostTypes.h"

constexpr const char* kAITimerSuite = "AI Timer Suite";
constexpr std::int32_t kAITimerSuiteVersion = 5;

// Thread: main.
struct AITimerSuite {
    AIErr (*AddTimer)(SPPluginRef self, const char* name, std::int32_t periodInTicks,
                      AITimerHandle* timer);  // 0; 60 ticks a second; the handle stays the host's
    void* unused1[1];                         // 1
    AIErr (*GetTimerActive)(AITimerHandle timer, AIBoolean* active);  // 2
    AIErr (*SetTimerActive)(AITimerHandle timer, AIBoolean active);   // 3
    void* unused4[5];                                                 // 4 to 8
};
