#include "documents/DocumentRegistry.h"

#include <map>

#include "support/Log.h"
#include "support/UntilUnloaded.h"

namespace {

struct DocumentRecord {
    std::string filePath;
    std::int64_t timestamp = 0;  // 32-bit seconds since 1970, zero-extended
    std::string fontUsage;       // the JSON text of the last report
};

using DocumentRegistry = std::map<std::uint64_t, DocumentRecord>;

const UntilUnloaded<DocumentRegistry> sDocumentRegistry;

std::uint64_t KeyOf(AIDocumentHandle document) { return reinterpret_cast<std::uintptr_t>(document); }

DocumentRecord& RecordOf(AIDocumentHandle document) { return (*sDocumentRegistry)[KeyOf(document)]; }

// More of a report than fits a line is not looked at: it has some 100 bytes for each font and file of the document.
constexpr int kLoggedSize = static_cast<int>(kLogBufferSize);

void LogExit(const char* operation) { LogMessage(kLogExit, "Exiting %s()", operation); }

}  // namespace

void SetFilePathForDocumentHandle(AIDocumentHandle document, const std::string& path) {
    constexpr const char* kName = "SetFilePathForDocumentHandle";
    LogMessage(kLogEntry, "Entering %s(%08x, '%s')", kName, Low32(document), path.c_str());
    RecordOf(document).filePath = path;
    LogExit(kName);
}

std::string GetFilePathForDocumentHandle(AIDocumentHandle document) {
    constexpr const char* kName = "GetFilePathForDocumentHandle";
    LogMessage(kLogEntry, "Entering %s(%08x)", kName, Low32(document));
    std::string path = RecordOf(document).filePath;
    LogMessage(kLogExit, "%s(%08x) returning '%s'", kName, Low32(document), path.c_str());
    return path;
}

void SetTimestampForDocumentHandle(AIDocumentHandle document, std::uint32_t timestamp) {
    constexpr const char* kName = "SetTimestampForDocumentHandle";
    LogMessage(kLogEntry, "Entering %s(%08x, 0x%08x)", kName, Low32(document), timestamp);
    RecordOf(document).timestamp = timestamp;
    LogExit(kName);
}

std::int64_t GetTimestampForDocumentHandle(AIDocumentHandle document) {
    constexpr const char* kName = "GetTimestampForDocumentHandle";
    LogMessage(kLogEntry, "Entering %s(%08x)", kName, Low32(document));
    const std::int64_t timestamp = RecordOf(document).timestamp;
    LogMessage(kLogExit, "%s(%08x) returning 0x%08x", kName, Low32(document), static_cast<unsigned>(timestamp));
    return timestamp;
}

void SetFontUsageForDocumentHandle(AIDocumentHandle document, const std::string& report) {
    constexpr const char* kName = "SetFontUsageForDocumentHandle";
    LogMessage(kLogEntry, "Entering %s(%08x, '%.*s')", kName, Low32(document), kLoggedSize, report.c_str());
    RecordOf(document).fontUsage = report;
    LogExit(kName);
}

std::string GetFontUsageForDocumentHandle(AIDocumentHandle document) {
    constexpr const char* kName = "GetFontUsageForDocumentHandle";
    LogMessage(kLogEntry, "Entering %s(%08x)", kName, Low32(document));
    std::string report = RecordOf(document).fontUsage;
    LogMessage(kLogExit, "%s(%08x) returning '%.*s'", kName, Low32(document), kLoggedSize, report.c_str());
    return report;
}

void ForgetDocumentHandle(AIDocumentHandle document) { sDocumentRegistry->erase(KeyOf(document)); }

std::size_t DocumentRegistrySize() { return sDocumentRegistry->size(); }
