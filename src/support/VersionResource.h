// Reading text fields of the U.S. English, Unicode table ("040904b0") of a file's version resource.
// Thread: main.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Reads one field of the file at `dllPath`; `fieldName` is UTF-8. On success copies the value as UTF-8 into
// `destination` (`destinationSize` bytes, not terminated when the value fills it) and returns 0. Returns
// kLookupNotFound and leaves `destination` alone when the file, the table or the field is missing or the value is
// empty. Throws utfcpp's exceptions for a field name that is not UTF-8.
std::int32_t StringValueFromVersionResource(const std::wstring& dllPath, const std::string& fieldName,
                                            char* destination, std::size_t destinationSize);
