// The one timer of the fake host.
#pragma once

#include "host/TimerSuite.h"

struct FakeTimer {
    // What AddTimer gives out.
    AITimerHandle handle = reinterpret_cast<AITimerHandle>(0x0000000100006001);
    // What GetTimerActive fills in, whatever it answers.
    AIBoolean isActive = 0;
};

const AITimerSuite& FakeTimerSuite();
