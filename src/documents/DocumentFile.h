// The file of a document, as the host tells it.
// Thread: main.
#pragma once

#include <cstdint>
#include <string>

#include "host/FilePath.h"

// Stores the path of the host's current document in `outPath`, or its file name alone; UTF-8. A document that was never
// saved has a bare title. Returns the host's code, also 0 when the path is empty. Throws ai::Error when the host fails
// while it converts the path.
std::int32_t GetDocumentFileSpec(std::string& outPath, bool bFileNameOnly);

// Stores the path, or its file name alone, in `outText` as UTF-8. Returns 0, or -1 when the text is empty. Throws
// ai::Error when the host fails. No caller asks for the name alone yet.
std::int32_t ConvertFilePathToString(const ai::FilePathData& path, std::string& outText, bool bFileNameOnly);

// Whether a recorded path names a file: it holds a separator. A bare name is the title of a document never saved.
bool HoldsPathSeparator(const std::string& path);
