#include "frame/PluginCaller.h"

#include "documents/FileFormatHook.h"
#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
#include "frame/IdleTimer.h"
#include "frame/LifeCycle.h"
#include "frame/Notifiers.h"
#include "menus/MenuMessages.h"
#include "support/Log.h"
#include "support/ResultCodes.h"

namespace {

constexpr const char* kName = "HandlePluginCaller";
constexpr std::int32_t kUnloadRefused = 1;

std::int32_t UnhandledSelector() {
    LogMessage(kLogNote, "...UNHANDLED SELECTOR");
    return kNoErr;
}

std::int32_t HandleMenuMessage(const char* selector, AIMenuMessage* message) {
    LogMessage(kLogNote, "- caller is kCallerAIMenu");
    if (TokensAreEqual(selector, kSelectorAIGoMenuItem)) {
        LogMessage(kLogNote, "- selector is kSelectorAIGoMenuItem");
        return GoMenuItem(message);
    }
    if (TokensAreEqual(selector, kSelectorAIUpdateMenuItem)) {
        updateMenuItem(message);
        return kNoErr;
    }
    return UnhandledSelector();
}

std::int32_t HandleTimerMessage(const char* selector) {
    if (TokensAreEqual(selector, kSelectorAIGoTimer)) {
        HandleIdleTick();
    }
    return kNoErr;
}

// The plug-in stays in memory while it is registered for anything.
std::int32_t HandleAccessMessage(const char* selector) {
    if (!TokensAreEqual(selector, kSPAccessUnloadSelector)) {
        return kNoErr;
    }
    if (sGlobals != nullptr) {
        return kUnloadRefused;
    }
    sPluginCoreIsUsable = false;
    return kNoErr;
}

std::int32_t Route(const char* caller, const char* selector, SPMessageData* message) {
    if (TokensAreEqual(caller, kCallerAIMenu)) {
        return HandleMenuMessage(selector, reinterpret_cast<AIMenuMessage*>(message));
    }
    if (TokensAreEqual(caller, kCallerAINotify)) {
        return TokensAreEqual(selector, kSelectorAINotify) ? GoNotifier(reinterpret_cast<AINotifierMessage*>(message))
                                                           : UnhandledSelector();
    }
    if (TokensAreEqual(caller, kCallerAIFileFormat)) {
        return TokensAreEqual(selector, kSelectorAICheckFileFormat)
                   ? CheckFileFormat(reinterpret_cast<const AIFileFormatMessage*>(message))
                   : UnhandledSelector();
    }
    if (TokensAreEqual(caller, kSPAccessCaller)) {
        return HandleAccessMessage(selector);
    }
    LogMessage(kLogNote, "%s(caller='%s', selector='%s', message=0x%08x) doing nothing.", kName, caller, selector,
               Low32(message));
    return kNoErr;
}

}  // namespace

std::int32_t HandlePluginCaller(const char* caller, const char* selector, SPMessageData* message) {
    // Ticks come first and are never logged: they would flood the log.
    if (TokensAreEqual(caller, kCallerAITimer)) {
        return HandleTimerMessage(selector);
    }
    LogMessage(kLogEntry, "Entering %s(caller='%s', selector='%s', message=0x%08x)", kName, caller, selector,
               Low32(message));
    const std::int32_t result = Route(caller, selector, message);
    LogMessage(kLogExit, "%s(caller='%s', selector='%s', message=0x%08x) returning %d", kName, caller, selector,
               Low32(message), result);
    return result;
}
