// "AI Document Suite": what is asked about the current document.
#include "host/DocumentSuite.h"

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/HostPaths.h"

namespace simhost {

namespace {

constexpr const char* kName = "AI Document Suite";
constexpr AIErr kNoDocument = static_cast<AIErr>(FourCharCode("NDOC"));

AIErr GetDocumentFileSpecification(ai::FilePathData& path) {
    const SuiteCall call(kName, "GetDocumentFileSpecification");
    return call.Perform([&] {
        const Document* const document = Host().model.Current();
        return document == nullptr ? kNoDocument : AnswerPath(call, document->path, path);
    });
}

AIErr GetDocumentModified(AIBoolean* modified) {
    const SuiteCall call(kName, "GetDocumentModified");
    return call.Perform([&]() -> AIErr {
        if (modified == nullptr) {
            return call.BadArgument("nowhere to put the answer");
        }
        const Document* const document = Host().model.Current();
        if (document == nullptr) {
            return kNoDocument;
        }
        *modified = document->modified ? 1 : 0;
        return 0;
    });
}

AIErr GetDocument(AIDocumentHandle* handle) {
    const SuiteCall call(kName, "GetDocument");
    return call.Perform([&]() -> AIErr {
        if (handle == nullptr) {
            return call.BadArgument("nowhere to put the answer");
        }
        const Document* const document = Host().model.Current();
        *handle = document == nullptr ? nullptr : static_cast<AIDocumentHandle>(document->handle);
        return document == nullptr ? kNoDocument : 0;
    });
}

}  // namespace

void InstallDocumentSuite(SuiteStore& suites) {
    auto& table = suites.Table<AIDocumentSuite>(kName);
    table.GetDocumentFileSpecification = &GetDocumentFileSpecification;
    table.GetDocumentModified = &GetDocumentModified;
    table.GetDocument = &GetDocument;
}

}  // namespace simhost
