// What the plug-in learned about each open document: its path, its file's time and its last font-usage report, by
// document handle. Process-wide, empty at load. A Set or Get operation that misses makes a record with default values.
// Records are copied out; handles are compared, never followed.
// Thread: main.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/HostTypes.h"

void SetFilePathForDocumentHandle(AIDocumentHandle document, const std::string& path);
// Empty when nothing is recorded.
std::string GetFilePathForDocumentHandle(AIDocumentHandle document);

// Seconds since 1970.
void SetTimestampForDocumentHandle(AIDocumentHandle document, std::uint32_t timestamp);
// 0 when nothing is recorded.
std::int64_t GetTimestampForDocumentHandle(AIDocumentHandle document);

void SetFontUsageForDocumentHandle(AIDocumentHandle document, const std::string& report);
// Empty when nothing is recorded.
std::string GetFontUsageForDocumentHandle(AIDocumentHandle document);

// Removes the document's record; nothing happens when there is none.
void ForgetDocumentHandle(AIDocumentHandle document);

// How many documents have a record.
std::size_t DocumentRegistrySize();
