#include "documents/FileFormatHook.h"

#include <array>
#include <string>

#include "documents/DocumentFile.h"
#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
#include "host/FileFormatSuite.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/ForeignExceptionGuard.h"
#include "support/Log.h"
#include "support/ResultCodes.h"

namespace {

constexpr const char* kFormatName = "Quorvel";
constexpr unsigned char kFormatTitle[] = {7, 'Q', 'u', 'o', 'r', 'v', 'e', 'l'};
constexpr std::array kFileTypes = {
    static_cast<std::int32_t>(FourCharCode("ART5")),
    static_cast<std::int32_t>(FourCharCode("EPSF")),
    static_cast<std::int32_t>(FourCharCode("PDF ")),
    static_cast<std::int32_t>(FourCharCode("AITm")),
};
// High, so that the host asks this plug-in before its own readers.
constexpr std::int32_t kPriority = 10000;

using MomentaryFileFormatSuite = MomentarySuite<AIFileFormatSuite>;

// One retry at once is intentional: the format matters more to the PluginCore than a second call costs.
void AcquireFileFormatSuite(MomentaryFileFormatSuite& formats) {
    try {
        formats.AcquireOrThrow();
    } catch (std::int32_t) {
        formats.AcquireOrThrow();
    }
}

void RegisterFormat(const MomentaryFileFormatSuite& formats, SPPluginRef plugin) {
    PlatformAddFileFormatExData data{static_cast<std::int32_t>(kFileTypes.size()), kFileTypes.data(), kFormatTitle, 0,
                                     "ai,eps,pdf,ait"};
    AIFileFormatHandle format = nullptr;
    // The handle tells whether it worked.
    formats->AddFileFormatEx(plugin, kFormatName, &data, kFileFormatRead, &format, 0);
    if (format != nullptr) {
        formats->SetFileFormatPriority(format, kPriority);
        sGlobals->fileFormat = format;
    }
}

void TellPluginCore(const AIFileFormatMessage& message) {
    std::string path;
    if (ConvertFilePathToString(message.file, path, false) != kNoErr) {
        return;
    }
    if (const PCILoader* const pluginCore = PCILoader::GetSharedInstance()) {
        ReplyBuffer<kOpenReplySize> reply;
        pluginCore->pfHandleOpenExistingDocument(path.c_str(), reply.Data(), reply.Size());
    }
}

}  // namespace

std::int32_t AddFileFormat(SPInterfaceMessage* message) {
    constexpr const char* kName = "AddFileFormat";
    LogMessage(kLogEntry, "Entering %s", kName);
    MomentaryFileFormatSuite formats(kAIFileFormatSuite, kAIFileFormatSuiteVersion);
    try {
        AcquireFileFormatSuite(formats);
        RegisterFormat(formats, message->d.self);
    } catch (std::int32_t) {
        // The level of an exit is intentional: readers of the trace know the line so.
        LogMessage(kLogExit, "Error thrown in %s()", kName);
    }
    formats.ReleaseIfHeld();
    LogMessage(kLogExit, "Exiting %s", kName);
    return kNoErr;
}

std::int32_t CheckFileFormat(const AIFileFormatMessage* message) {
    try {
        CallForeignCode([&] { TellPluginCore(*message); });
    } catch (...) {
        // An answer of 0 would make the host read the file through this plug-in.
    }
    return kFormatRefused;
}
