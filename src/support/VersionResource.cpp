#include "support/VersionResource.h"

#include <windows.h>
// After windows.h, which it needs.
#include <winver.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

#include "support/Log.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"

namespace {

constexpr wchar_t kEnglishUnicodeTable[] = L"\\StringFileInfo\\040904b0\\";

// The file's whole version resource, or nothing after a log line.
std::optional<std::vector<char>> ReadVersionBlock(const std::wstring& dllPath) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(dllPath.c_str(), &ignored);
    if (size == 0) {
        LogMessage(kLogNote, "*** Error:  GetFileVersionInfoSize returned 0.\n");
        return std::nullopt;
    }
    std::vector<char> block(size);
    if (GetFileVersionInfoW(dllPath.c_str(), 0, size, block.data()) == 0) {
        LogMessage(kLogNote, "*** Error:  GetFileVersionInfo returned FALSE for DLL file, version info size %d.",
                   static_cast<int>(size));
        return std::nullopt;
    }
    LogMessage(kLogNote, "Got version resource info of size %d bytes.", static_cast<int>(size));
    return block;
}

// The field's value, or nothing after a log line. The value is terminated at its last reported position.
std::optional<std::wstring> QueryField(std::vector<char>& block, const std::string& fieldName) {
    void* data = nullptr;
    UINT length = 0;
    const std::wstring query = kEnglishUnicodeTable + Utf16FromUtf8(fieldName);
    if (VerQueryValueW(block.data(), query.c_str(), &data, &length) == 0) {
        LogMessage(kLogNote, "*** Error:  VerQueryValue returned FALSE for '%s' field in version info.",
                   fieldName.c_str());
        return std::nullopt;
    }
    if (length == 0 || data == nullptr) {
        LogMessage(kLogNote, "*** ERROR: Empty or NULL field data from VerQueryValue for '%s' field in version info.",
                   fieldName.c_str());
        return std::nullopt;
    }
    auto* const value = static_cast<wchar_t*>(data);
    value[length - 1] = L'\0';
    return std::wstring(value);
}

std::int32_t ReadField(const std::wstring& dllPath, const std::string& fieldName, char* destination,
                       std::size_t destinationSize) {
    std::optional<std::vector<char>> block = ReadVersionBlock(dllPath);
    if (!block) {
        return kLookupNotFound;
    }
    const std::optional<std::wstring> value = QueryField(*block, fieldName);
    if (!value) {
        return kLookupNotFound;
    }
    const std::string utf8 = Utf8FromWindowsText(*value);
    // With its terminator when there is room for it.
    std::memcpy(destination, utf8.c_str(), std::min(utf8.size() + 1, destinationSize));
    return kNoErr;
}

}  // namespace

std::int32_t StringValueFromVersionResource(const std::wstring& dllPath, const std::string& fieldName,
                                            char* destination, std::size_t destinationSize) {
    LogMessage(kLogEntry, "Entering StringValueFromVersionResource(dllPath='%s', fieldName='%s')",
               Utf8FromWindowsText(dllPath).c_str(), fieldName.c_str());
    const std::int32_t result = ReadField(dllPath, fieldName, destination, destinationSize);
    LogMessage(kLogExit, "StringValueFromVersionResource() returning %d", result);
    return result;
}
