#pragma once

#include "host/HostTypes.h"

constexpr const char* kAIFileFormatSuite = "AI File Format Suite";
constexpr std::int32_t kAIFileFormatSuiteVersion = 14;

constexpr std::int32_t kFileFormatRead = 1;

// The registration record of a format with several file types; the host copies what it points to.
struct PlatformAddFileFormatExData {
    std::int32_t numTypes;
    const std::int32_t* types;   // four-character codes
    const unsigned char* title;  // one length byte, then the characters
    std::int32_t titleOrder;
    const char* extensions;  // separated by commas
};

// Handles stay the host's.
// Thread: main.
struct AIFileFormatSuite {
    void* unused0[8];  // 0 to 7; slot 0 adds a format of a single type and reads another record
    AIErr (*AddFileFormatEx)(SPPluginRef self, const char* name, PlatformAddFileFormatExData* data,
                             std::int32_t options, AIFileFormatHandle* format,
                             std::int32_t extendedOptions);                            // 8
    void* unused9[5];                                                                  // 9 to 13
    AIErr (*SetFileFormatPriority)(AIFileFormatHandle format, std::int32_t priority);  // 14
    void* unused15[9];                                                                 // 15 to 23
};
