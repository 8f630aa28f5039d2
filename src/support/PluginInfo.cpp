#include "support/PluginInfo.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "support/Log.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"
#include "support/VersionResource.h"

namespace {

constexpr std::size_t kModulePathSize = 1024;
constexpr char kFallbackPluginPath[] = "./QuorvelTypeAgent...";

using IdentityText = std::array<char, kPluginIdentityTextSize>;

// All of it lives as long as the module and is never freed.
struct State {
    HMODULE module = nullptr;        // looked up on first use
    std::uint8_t isFunctional = 0;   // set by a front end that calls an initialiser
    IdentityText identityText = {};  // set by a front end that calls an initialiser
    IdentityText internalName = {};  // read on first use; not terminated when the value fills it
};
State sState;

// Its address lies in the plug-in's module, whatever the module's file is called.
const char sAddressInThisModule = 0;

std::string TextOf(const IdentityText& text) { return {text.data(), strnlen(text.data(), text.size())}; }

// Windows' answer for a module's path: the text, and the length, which reaches the buffer's size when it was cut.
struct ModulePath {
    std::wstring text;
    DWORD length;
};

ModulePath ReadModulePath(HMODULE module) {
    std::array<wchar_t, kModulePathSize> buffer{};
    const DWORD length = GetModuleFileNameW(module, buffer.data(), static_cast<DWORD>(buffer.size()));
    buffer.back() = L'\0';
    return {buffer.data(), length};
}

void LogPathBufferTooSmall() { LogMessage(kLogNote, "*** ERROR:  Buffer not large enough for plugin DLL file path!"); }

std::int32_t ReadOwnVersionField(const std::string& fieldName, char* destination, std::size_t destinationSize) {
    const HMODULE module = GetPluginModuleHandle();
    if (module == nullptr) {
        return kLookupNotFound;
    }
    const ModulePath path = ReadModulePath(module);
    const bool truncated = path.length >= kModulePathSize;
    if (truncated) {
        LogPathBufferTooSmall();
    }
    LogMessage(kLogNote, "Plugin DLL file path corresponding to handle 0x%08x%s:", Low32(module),
               truncated ? " (TRUNCATED!!!)" : "");
    return StringValueFromVersionResource(path.text, fieldName, destination, destinationSize);
}

}  // namespace

const char* sPluginIdentifier = "com.quorvel.AutoActivationPlugin.AI20";

HMODULE GetPluginModuleHandle() {
    if (sState.module != nullptr) {
        return sState.module;
    }
    // The reference is never released, on purpose: it keeps the code that the panel's bus calls in memory, whatever the
    // host frees.
    constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
    HMODULE module = nullptr;
    if (GetModuleHandleExW(kFlags, reinterpret_cast<LPCWSTR>(&sAddressInThisModule), &module) == 0) {
        const auto error = static_cast<int>(GetLastError());
        LogMessage(kLogNote, "Error %d (0x%08x) in call to GetModuleHandleEx(0x%08x, 0x%08x, 0x%08x)", error,
                   static_cast<unsigned>(error), static_cast<unsigned>(kFlags), Low32(&sAddressInThisModule),
                   Low32(&module));
        return sState.module;
    }
    LogMessage(kLogNote, "GetModuleHandleEx returned module handle 0x%08x", Low32(module));
    sState.module = module;
    return module;
}

std::int32_t StringValueFromVersionResource(const std::string& fieldName, char* destination,
                                            std::size_t destinationSize) {
    LogMessage(kLogEntry, "Entering StringValueFromVersionResource(fieldName \"%s\")", fieldName.c_str());
    const std::int32_t result = ReadOwnVersionField(fieldName, destination, destinationSize);
    LogMessage(kLogExit, "StringValueFromVersionResource() returning %d", result);
    return result;
}

std::string CrossPluginUtils::StringValueFromVersionResource(const std::string& fieldName) {
    constexpr const char* kName = "CrossPluginUtils::StringValueFromVersionResource";
    LogMessage(kLogEntry, "Entering %s(fieldName \"%s\")", kName, fieldName.c_str());
    std::array<char, 1024> buffer{};
    std::string value;
    if (::StringValueFromVersionResource(fieldName, buffer.data(), buffer.size()) == kNoErr) {
        value.assign(buffer.data(), strnlen(buffer.data(), buffer.size()));
    }
    LogMessage(kLogExit, "%s() returning '%s'", kName, value.c_str());
    return value;
}

namespace PluginInfo {

void Initialize() {
    sState = State{};
    sState.isFunctional = 1;
}

void Initialize(const char* identityText) {
    Initialize();
    std::memcpy(sState.identityText.data(), identityText,
                std::min(std::strlen(identityText), sState.identityText.size()));
}

void SetPluginModuleHandle(HMODULE module) { sState.module = module; }

void SetPluginIsFunctional(bool isFunctional) {
    LogMessage(kLogNote, "Calling %s( isFunctional=%d )", "PluginInfo::SetPluginIsFunctional", isFunctional ? 1 : 0);
    sState.isFunctional = isFunctional ? 1 : 0;
}

bool PluginIsFunctional() { return sState.isFunctional != 0; }

std::string GetIdentityText() { return TextOf(sState.identityText); }

std::string GetPluginPath(const char* /*pluginIdentifier*/) {
    constexpr const char* kName = "PluginInfo::GetPluginPath";
    LogMessage(kLogEntry, "Entering %s()", kName);
    std::string result = kFallbackPluginPath;
    if (const HMODULE module = GetPluginModuleHandle(); module != nullptr) {
        const ModulePath path = ReadModulePath(module);
        if (path.length >= kModulePathSize) {
            LogPathBufferTooSmall();
        } else if (path.length != 0) {
            result = Utf8FromWindowsText(path.text);
        }
    }
    LogMessage(kLogExit, "%s() returning '%s'", kName, result.c_str());
    return result;
}

std::string GetInternalName() {
    if (sState.internalName.front() == '\0') {
        StringValueFromVersionResource("InternalName", sState.internalName.data(), sState.internalName.size());
    }
    return TextOf(sState.internalName);
}

std::string GetFileVersion() { return CrossPluginUtils::StringValueFromVersionResource("FileVersion"); }

}  // namespace PluginInfo
