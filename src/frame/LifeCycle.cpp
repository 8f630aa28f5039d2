#include "frame/LifeCycle.h"

#include <exception>
#include <string>

#include "dialogs/DialogSuppression.h"
#include "documents/CurrentDocument.h"
#include "documents/FileFormatHook.h"
#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
#include "frame/IdleTimer.h"
#include "frame/Notifiers.h"
#include "frame/SuiteLease.h"
#include "host/HeldSuites.h"
#include "host/SPSuites.h"
#include "menus/MenuTree.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/Log.h"
#include "support/PluginInfo.h"
#include "support/ResultCodes.h"

bool sPluginCoreIsUsable = false;

namespace {

using MomentaryBlocksSuite = MomentarySuite<SPBlocksSuite>;

void AcquireBlocksSuiteForStartup(MomentaryBlocksSuite& blocks) {
    try {
        blocks.AcquireOrThrow();
    } catch (std::int32_t) {
        LogMessage(kLogNote, "EXCEPTION: AIErr from AcquireSuite(kSPBlocksSuite)");
        throw;
    }
}

void AllocateGlobals(const MomentaryBlocksSuite& blocks, SPInterfaceMessage* message) {
    void* block = nullptr;
    ThrowIfError(blocks->AllocateBlock(sizeof(PluginGlobals), "globals", &block));
    sGlobals = static_cast<PluginGlobals*>(block);
    message->d.globals = sGlobals;
    InitializeGlobals(*sGlobals, message->d.self);
}

// The results do not count: each step logs its failures. Of the host's refusals only that of the menu suite ends
// start-up, by its thrown code.
void AddToHost(SPInterfaceMessage* message) {
    if (AddAllQuorvelMenuItems() == kNoErr) {
        AddNotifiers(message);
    }
    AddFileFormat(message);
}

}  // namespace

std::int32_t StartupPlugin(SPInterfaceMessage* message) {
    constexpr const char* kName = "StartupPlugin";
    LogMessage(kLogEntry, "Entering %s", kName);
    const std::string pluginPath = PluginInfo::GetPluginPath(sPluginIdentifier);
    PCILoader::GetSharedInstance()->pfInitializePluginCoreInterface(pluginPath.c_str());

    std::int32_t result = kNoErr;
    MomentaryBlocksSuite blocks(kSPBlocksSuite, kSPBlocksSuiteVersion);
    try {
        AcquireBlocksSuiteForStartup(blocks);
        AllocateGlobals(blocks, message);
        AddToHost(message);
        SetupIllustratorDialogSuppression(PluginCoreIsEnabled());
    } catch (std::int32_t code) {
        LogMessage(kLogNote, "StartupPlugin, after catching an error\n");
        result = code;
    }
    blocks.ReleaseIfHeld();
    if (result == kNoErr) {
        AddTimers(message);
    }
    // The blank at the end is intentional: tools that read the trace match the whole line.
    LogMessage(kLogExit, "Exiting %s ", kName);
    return result;
}

std::int32_t ShutdownPlugin(SPMessageData* message) {
    // Level 0 and no exit line are intentional: readers of the trace know shut-down by them.
    LogMessage(kLogNote, "Entering %s", "ShutdownPlugin");
    sPluginCoreIsUsable = false;
    if (sGlobals == nullptr) {
        return kNoErr;
    }
    // An exception of the PluginCore must not keep the rest from being given back: it goes on at the end.
    std::exception_ptr failure;
    const auto attempt = [&failure](auto step) {
        try {
            step();
        } catch (...) {
            failure = std::current_exception();
        }
    };
    std::int32_t result = kNoErr;
    attempt([&] {
        if (const auto& terminate = PCILoader::GetSharedInstance()->pfTerminatePluginCoreInterface;
            !terminate.IsNull()) {
            result = terminate();
        }
    });
    delete sGlobals->text;
    sGlobals->text = nullptr;
    attempt([] { SetupIllustratorDialogSuppression(false); });
    LogMessage(kLogNote, "Calling RemoveTimers from ShutdownPlugin.");
    RemoveTimers();
    sSuiteLease.EndRun();

    MomentaryBlocksSuite blocks(kSPBlocksSuite, kSPBlocksSuiteVersion);
    try {
        blocks.AcquireOrThrow();
        // A block that the host does not take back is lost either way.
        blocks->FreeBlock(sGlobals);
    } catch (std::int32_t code) {
        result = code;
    }
    sGlobals = nullptr;
    message->globals = nullptr;
    if (failure != nullptr) {
        std::rethrow_exception(failure);
    }
    return result;
}

std::int32_t AboutPlugin(SPMessageData* /*message*/) {
    constexpr const char* kName = "AboutPlugin";
    LogMessage(kLogEntry, "Entering %s", kName);
    // The host offers the about box also after shut-down, when the suites are given back.
    const std::string path = sDocumentSuite ? CurrentDocumentPath() : std::string();
    std::int32_t result = kNoErr;
    // And also while the PluginCore is missing or incompatible.
    const PCILoader* const pluginCore = sPluginCoreIsUsable ? PCILoader::GetSharedInstance() : nullptr;
    if (pluginCore != nullptr && !pluginCore->pfInvokeCommandDialog.IsNull()) {
        ReplyBuffer<kCommandDialogReplySize> reply;
        result = pluginCore->pfInvokeCommandDialog(path.c_str(), reply.Data());
    }
    LogMessage(kLogExit, "Exiting %s", kName);
    return result;
}
