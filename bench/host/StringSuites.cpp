// Host strings and paths: the implementation that one points to is the text itself, and stays the document's.
#include <cstdint>
#include <string>

#include "bench/host/CountingSuites.h"
#include "bench/host/HostCalls.h"

namespace bench {

namespace {

AIErr Initialize(ai::UnicodeStringData& string, const char*, std::int64_t, std::int32_t) {
    ++hostCalls;
    string.impl = &shownDocument->path;
    return 0;
}

AIErr Destroy(ai::UnicodeStringData& string) {
    ++hostCalls;
    string.impl = nullptr;
    return 0;
}

AIErr Assign(ai::UnicodeStringData& string, const ai::UnicodeStringData& source) {
    ++hostCalls;
    string.impl = source.impl;
    return 0;
}

std::size_t Utf16(const ai::UnicodeStringData& string, const HostUtf16Unit*& units) {
    ++hostCalls;
    const auto& text = *static_cast<const std::u16string*>(string.impl);
    units = reinterpret_cast<const HostUtf16Unit*>(text.data());
    return text.size();
}

AIErr GetDocumentFileSpecification(ai::FilePathData& path) {
    ++hostCalls;
    path.impl = &shownDocument->path;
    return 0;
}

AIErr GetDocument(AIDocumentHandle* document) {
    ++hostCalls;
    *document = reinterpret_cast<AIDocumentHandle>(shownDocument);
    return 0;
}

AIErr GetDocumentModified(AIBoolean* modified) {
    ++hostCalls;
    *modified = 0;
    return 0;
}

AIErr DeleteFilePath(ai::FilePathData& path) {
    ++hostCalls;
    path.impl = nullptr;
    return 0;
}

AIErr CopyPath(const ai::FilePathData& source, ai::FilePathData& target) {
    ++hostCalls;
    target.impl = source.impl;
    return 0;
}

AIBool8 IsEmpty(const ai::FilePathData& path) {
    ++hostCalls;
    return static_cast<const std::u16string*>(path.impl)->empty() ? 1 : 0;
}

// The name alone is not told apart: nobody asks for it here.
AIErr TextOfPath(const ai::FilePathData& path, AIBool8, ai::UnicodeStringData& text) {
    ++hostCalls;
    text.impl = path.impl;
    return 0;
}

AIUnicodeStringSuite MakeUnicodeStringSuite() {
    AIUnicodeStringSuite suite{};
    suite.Initialize = Initialize;
    suite.Destroy = Destroy;
    suite.Assign = Assign;
    suite.Copy = Assign;
    suite.UTF_16 = Utf16;
    return suite;
}

AIFilePathSuite MakeFilePathSuite() {
    AIFilePathSuite suite{};
    suite.DeleteFilePath = DeleteFilePath;
    suite.Copy = CopyPath;
    suite.IsEmpty = IsEmpty;
    suite.GetFileName = TextOfPath;
    suite.GetFullPath = TextOfPath;
    return suite;
}

AIDocumentSuite MakeDocumentSuite() {
    AIDocumentSuite suite{};
    suite.GetDocumentFileSpecification = GetDocumentFileSpecification;
    suite.GetDocumentModified = GetDocumentModified;
    suite.GetDocument = GetDocument;
    return suite;
}

}  // namespace

const AIUnicodeStringSuite unicodeStringSuite = MakeUnicodeStringSuite();
const AIFilePathSuite filePathSuite = MakeFilePathSuite();
const AIDocumentSuite documentSuite = MakeDocumentSuite();

}  // namespace bench
