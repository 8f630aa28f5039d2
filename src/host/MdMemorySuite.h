#pragma once

#include "host/HostTypes.h"

// Thread: main.
struct AIMdMemorySuite {
    void* unused0[1];                                         // 0
    AIErr (*MdMemoryDisposeHandle)(AIMdMemoryHandle handle);  // 1
    void* unused2[4];                                         // 2 to 5
};
