#include "documents/CurrentDocument.h"

#include "documents/DocumentFile.h"
#include "documents/DocumentRegistry.h"
#include "host/DocumentSuite.h"
#include "host/HeldSuites.h"
#include "support/ResultCodes.h"

AIDocumentHandle CurrentDocument() {
    AIDocumentHandle document = nullptr;
    return sDocumentSuite->GetDocument(&document) == kNoErr ? document : nullptr;
}

std::string CurrentDocumentPath() {
    std::string path;
    // Whatever the host's reason: without an answer the path stays empty.
    GetDocumentFileSpec(path, false);
    return path;
}

std::string RefreshRecordedPath(AIDocumentHandle document) {
    std::string recorded = GetFilePathForDocumentHandle(document);
    if (recorded.empty() || HoldsPathSeparator(recorded)) {
        return recorded;
    }
    std::string current;
    if (GetDocumentFileSpec(current, false) != kNoErr || !HoldsPathSeparator(current)) {
        return recorded;
    }
    SetFilePathForDocumentHandle(document, current);
    return current;
}
