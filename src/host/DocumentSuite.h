#pragma once

#include "host/FilePath.h"
#include "host/HostTypes.h"

// All operations act on the host's current document.
// Thread: main.
struct AIDocumentSuite {
    AIErr (*GetDocumentFileSpecification)(ai::FilePathData& path);  // 0
    void* unused1[11];                                              // 1 to 11
    AIErr (*GetDocumentModified)(AIBoolean* modified);              // 12; 0 once a save has really happened
    void* unused13[6];                                              // 13 to 18
    AIErr (*GetDocument)(AIDocumentHandle* document);               // 19
    void* unused20[54];                                             // 20 to 73
};
