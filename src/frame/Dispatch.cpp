#include "frame/Dispatch.h"

#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
#include "frame/InterfaceMessages.h"
#include "frame/PluginCaller.h"
#include "frame/SuiteLease.h"
#include "support/ForeignExceptionGuard.h"
#include "support/Log.h"
#include "support/ResultCodes.h"

namespace {

constexpr std::int32_t kMessageRefused = 1;

// 1 while a message is being handled. A plain flag: it guards against messages that the host sends from inside a call
// of ours, not against other threads.
std::uint32_t sDispatchBusy = 0;

bool Is(const char* caller, const char* selector, const char* expectedCaller, const char* expectedSelector) {
    return TokensAreEqual(caller, expectedCaller) && TokensAreEqual(selector, expectedSelector);
}

// A started plug-in holds the table already and gives it back in its shut-down: no need to compare names for it.
MessageKind KindOf(const char* caller, const char* selector) {
    if (sGlobals != nullptr) {
        return MessageKind::kOrdinary;
    }
    if (Is(caller, selector, kSPInterfaceCaller, kSPInterfaceStartupSelector)) {
        return MessageKind::kStartup;
    }
    return Is(caller, selector, kSPInterfaceCaller, kSPInterfaceShutdownSelector) ||
                   Is(caller, selector, kSPAccessCaller, kSPAccessUnloadSelector)
               ? MessageKind::kClosingWithoutRun
               : MessageKind::kOrdinary;
}

std::int32_t Dispatch(const char* caller, const char* selector, SPMessageData* message) {
    if (message == nullptr) {
        return kBadParameterErr;
    }
    sCurrentMessage = message;
    sBasicSuite = message->basic;
    sGlobals = static_cast<PluginGlobals*>(message->globals);
    if (sBasicSuite == nullptr) {
        LogMessage(kLogNote, "- no basic suite available in message");
        return kNoErr;
    }
    sSuiteLease.BeginMessage(KindOf(caller, selector));
    return TokensAreEqual(caller, kSPInterfaceCaller) ? HandleInterfaceMessage(selector, message)
                                                      : HandlePluginCaller(caller, selector, message);
}

struct DispatchCall {
    const char* caller;
    const char* selector;
    SPMessageData* message;
    std::int32_t result = kNoErr;
    bool threw = false;
};

void DispatchCatchingAll(void* context) {
    auto* const call = static_cast<DispatchCall*>(context);
    try {
        call->result = Dispatch(call->caller, call->selector, call->message);
    } catch (...) {
        call->threw = true;
    }
}

}  // namespace

std::int32_t DispatchGuarded(const char* caller, const char* selector, SPMessageData* message) noexcept {
    if (sDispatchBusy != 0) {
        return kMessageRefused;
    }
    sDispatchBusy = 1;
    DispatchCall call{caller, selector, message};
    const bool threwForeign = RunStoppingForeignExceptions(DispatchCatchingAll, &call) != 0;
    sDispatchBusy = 0;
    if (call.threw || threwForeign) {
        LogMessage(kLogNote, "Unhandled exception in Brightbox plugin.");
        return kNoErr;
    }
    return call.result;
}
