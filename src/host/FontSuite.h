#pragma once

#include "host/HostTypes.h"

// Font keys stay the host's.
// Thread: main.
struct AIFontSuite {
    void* unused0[17];                                                                         // 0 to 16
    AIErr (*GetDefaultFont)(std::int32_t script, AIFontKey* font);                             // 17
    void* unused18[1];                                                                         // 18
    AIErr (*GetPostScriptFontName)(AIFontKey font, char* name, std::int16_t nameSizeInBytes);  // 19
    void* unused20[7];                                                                         // 20 to 26
    AIErr (*FontKeyFromFont)(ATE::FontRef fontRef, AIFontKey* font);                           // 27
    void* unused28[36];                                                                        // 28 to 63
};
