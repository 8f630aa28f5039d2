// What the document scan asks about single art objects.
// Thread: main.
#pragma once

#include "host/HostTypes.h"
#include "host/UnicodeString.h"

struct AITextFrameSuite {
    void* unused0[13];                                                    // 0 to 12
    AIErr (*GetATETextRange)(AIArtHandle art, ATE::TextRangeRef* range);  // 13; the reference is the caller's
    void* unused14[12];                                                   // 14 to 25
};

struct AIPlacedSuite {
    void* unused0[14];                                                                // 0 to 13
    AIErr (*GetPlacedFilePathFromArt)(AIArtHandle art, ai::UnicodeStringData& path);  // 14
    void* unused15[7];                                                                // 15 to 21
};
