// The suite that comes with every message and gives access to all the others.
// Thread: main.
#pragma once

#include "host/HostTypes.h"

struct SPBasicSuite {
    SPErr (*AcquireSuite)(const char* name, std::int32_t version, const void** suite);  // 0; counted by the host
    SPErr (*ReleaseSuite)(const char* name, std::int32_t version);                      // 1
    SPBoolean (*IsEqual)(const char* token1, const char* token2);                       // 2; non-zero when equal
    void* unused3[4];                                                                   // 3 to 6
};
