// The text engine's suites whose operations the font scan uses. References are counted: what a call returns is already
// counted for the caller, who releases it once.
// Thread: main.
#pragma once

#include "host/HostTypes.h"

namespace ATE {

struct TextRangeSuite {
    void (*AddRef)(TextRangeRef range);                                                // 0
    void (*Release)(TextRangeRef range);                                               // 1
    ATEBool8 (*IsNull)(TextRangeRef range);                                            // 2
    void* unused3[10];                                                                 // 3 to 12
    ATEErr (*GetTextRunsIterator)(TextRangeRef range, TextRunsIteratorRef* iterator);  // 13
    void* unused14[8];                                                                 // 14 to 21
    ATEErr (*GetUniqueCharFeatures)(TextRangeRef range, CharFeaturesRef* features);    // 22
    void* unused23[30];                                                                // 23 to 52
};

struct TextRunsIteratorSuite {
    void (*AddRef)(TextRunsIteratorRef iterator);                          // 0
    void (*Release)(TextRunsIteratorRef iterator);                         // 1
    ATEBool8 (*IsNull)(TextRunsIteratorRef iterator);                      // 2
    void* unused3[1];                                                      // 3
    ATEErr (*IsNotDone)(TextRunsIteratorRef iterator, ATEBool8* notDone);  // 4
    void* unused5[4];                                                      // 5 to 8
    ATEErr (*Next)(TextRunsIteratorRef iterator);                          // 9
    ATEErr (*Item)(TextRunsIteratorRef iterator, TextRangeRef* run);       // 10
};

struct CharFeaturesSuite {
    void (*AddRef)(CharFeaturesRef features);                                          // 0
    void (*Release)(CharFeaturesRef features);                                         // 1
    ATEBool8 (*IsNull)(CharFeaturesRef features);                                      // 2
    void* unused3[2];                                                                  // 3 to 4
    ATEErr (*GetFont)(CharFeaturesRef features, ATEBool8* isAssigned, FontRef* font);  // 5
    void* unused6[240];                                                                // 6 to 245
};

struct FontSuite {
    void (*AddRef)(FontRef font);      // 0
    void (*Release)(FontRef font);     // 1
    ATEBool8 (*IsNull)(FontRef font);  // 2
    void* unused3[3];                  // 3 to 5
};

}  // namespace ATE
