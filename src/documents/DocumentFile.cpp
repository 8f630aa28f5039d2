#include "documents/DocumentFile.h"

#include "host/DocumentSuite.h"
#include "host/HeldSuites.h"
#include "support/Log.h"
#include "support/ResultCodes.h"

std::int32_t GetDocumentFileSpec(std::string& outPath, bool bFileNameOnly) {
    const int fileNameOnly = bFileNameOnly ? 1 : 0;
    LogMessage(kLogEntry, "Entering GetDocumentFileSpec(0x%08x, bFileNameOnly=%d)", Low32(&outPath), fileNameOnly);
    ai::FilePath path;
    const AIErr result = sDocumentSuite->GetDocumentFileSpecification(path.Data());
    if (result == kNoErr) {
        // An empty path is no failure of the host, so the conversion's own result does not count.
        ConvertFilePathToString(path.Data(), outPath, bFileNameOnly);
    }
    LogMessage(kLogExit, "GetDocumentFileSpec(pFilePath='%s', %d) returning %d (0x%08x)", outPath.c_str(), fileNameOnly,
               result, static_cast<unsigned>(result));
    return result;
}

std::int32_t ConvertFilePathToString(const ai::FilePathData& path, std::string& outText, bool bFileNameOnly) {
    outText = bFileNameOnly ? ai::FileNameOf(path) : ai::FullPathOf(path);
    return outText.empty() ? -1 : 0;
}

bool HoldsPathSeparator(const std::string& path) { return path.find_first_of("/\\") != std::string::npos; }
