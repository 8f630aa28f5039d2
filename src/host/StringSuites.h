// The suites behind ai::UnicodeString and ai::FilePath.
// Thread: main.
#pragma once

#include <cstddef>

#include "host/FilePath.h"
#include "host/HostTypes.h"
#include "host/UnicodeString.h"

constexpr std::int32_t kAIPlatformCharacterEncoding = 0;
constexpr std::int32_t kAIUTF8CharacterEncoding = 1;
constexpr std::int32_t kAIUTF16CharacterEncoding = 2;

struct AIUnicodeStringSuite {
    // `string` holds null before the call.
    AIErr (*Initialize)(ai::UnicodeStringData& string, const char* bytes, std::int64_t byteCount,
                        std::int32_t encoding);                                           // 0
    void* unused1[2];                                                                     // 1 to 2
    AIErr (*Destroy)(ai::UnicodeStringData& string);                                      // 3
    void* unused4[2];                                                                     // 4 to 5
    AIErr (*Assign)(ai::UnicodeStringData& string, const ai::UnicodeStringData& source);  // 6
    // `string` holds null before the call.
    AIErr (*Copy)(ai::UnicodeStringData& string, const ai::UnicodeStringData& source);  // 7
    void* unused8[8];                                                                   // 8 to 15
    std::size_t (*Length)(const ai::UnicodeStringData& string);                         // 16
    void* unused17[17];                                                                 // 17 to 33
    // Returns the number of units; the units stay the string's.
    std::size_t (*UTF_16)(const ai::UnicodeStringData& string, const HostUtf16Unit*& units);  // 34
    void* unused35[3];                                                                        // 35 to 37
};

struct AIFilePathSuite {
    void* unused0[1];                                                                                      // 0
    AIErr (*DeleteFilePath)(ai::FilePathData& path);                                                       // 1
    AIErr (*Copy)(const ai::FilePathData& source, ai::FilePathData& target);                               // 2
    AIBool8 (*IsEmpty)(const ai::FilePathData& path);                                                      // 3
    void* unused4[13];                                                                                     // 4 to 16
    AIErr (*GetFileName)(const ai::FilePathData& path, AIBool8 displayName, ai::UnicodeStringData& name);  // 17
    void* unused18[2];                                                                                     // 18 to 19
    AIErr (*GetFullPath)(const ai::FilePathData& path, AIBool8 displayName, ai::UnicodeStringData& text);  // 20
    void* unused21[8];                                                                                     // 21 to 28
};
