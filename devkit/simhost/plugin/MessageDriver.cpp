#include "simhost/plugin/MessageDriver.h"

#include <utility>

#include "doubles/host/Host.h"
#include "doubles/host/suites/AllSuites.h"
#include "simhost/checks/HostStateWatch.h"
#include "simhost/run/FlightRecorder.h"

namespace simhost {

namespace {

std::string Quoted(const char* text) { return text == nullptr ? "null" : "\"" + std::string(text) + "\""; }

}  // namespace

SPMessageData MessageDriver::CommonPart() const { return {kSPMessageCheck, kPluginRef, mGlobals, BasicSuite()}; }

std::int32_t MessageDriver::CallOrThrow(const char* caller, const char* selector, void* message) const {
    try {
        return mPlugin.Call(caller, selector, message);
    } catch (const HostLost&) {
        // Out of a message within this one, where it was told.
        throw;
    } catch (...) {
        Host().rules.Broken(Rule::kCrash, "message " + mCurrent + ": an exception left the plug-in");
        throw HostLost();
    }
}

std::int32_t MessageDriver::Send(const char* caller, const char* selector, SPMessageData* common, void* message) {
    // A message inside a message: the outer one is current again afterwards.
    const std::string outer = std::exchange(mCurrent, Quoted(caller) + "/" + Quoted(selector));
    RecordMessage(mCurrent);
    HostStateWatch state;
    const std::int32_t answer = CallOrThrow(caller, selector, message);
    state.Check("message " + mCurrent);
    if (common != nullptr) {
        mGlobals = common->globals;
    }
    if (onAnswer && outer.empty()) {
        onAnswer(mCurrent, answer);
    }
    mCurrent = outer;
    RecordMessage(mCurrent);
    return answer;
}

std::int32_t MessageDriver::SendInterface(const char* selector) {
    SPInterfaceMessage message{CommonPart()};
    return Send(kSPInterfaceCaller, selector, &message.d, &message);
}

std::int32_t MessageDriver::SendAccess(const char* selector) {
    SPAccessMessage message{CommonPart(), 0};
    return Send(kSPAccessCaller, selector, &message.d, &message);
}

std::int32_t MessageDriver::SendNotification(void* notifier, const std::string& type, void* data) {
    AINotifierMessage message{CommonPart(), static_cast<AINotifierHandle>(notifier), type.c_str(), data};
    return Send(kCallerAINotify, kSelectorAINotify, &message.d, &message);
}

std::int32_t MessageDriver::SendMenu(const char* selector, void* item) {
    AIMenuMessage message{CommonPart(), static_cast<AIMenuItemHandle>(item)};
    return Send(kCallerAIMenu, selector, &message.d, &message);
}

std::int32_t MessageDriver::SendTick(void* timer) {
    AITimerMessage message{CommonPart(), static_cast<AITimerHandle>(timer)};
    return Send(kCallerAITimer, kSelectorAIGoTimer, &message.d, &message);
}

std::int32_t MessageDriver::SendFileCheck(void* format, ai::FilePathData& path) {
    AIFileFormatMessage message{CommonPart(), static_cast<AIFileFormatHandle>(format), 0, nullptr, nullptr, path, 0,
                                nullptr};
    const std::int32_t answer = Send(kCallerAIFileFormat, kSelectorAICheckFileFormat, &message.d, &message);
    path = message.file;
    return answer;
}

std::int32_t MessageDriver::SendPlain(const std::string& caller, const std::string& selector, bool withBasicSuite) {
    SPMessageData message = CommonPart();
    if (!withBasicSuite) {
        message.basic = nullptr;
    }
    return Send(caller.c_str(), selector.c_str(), &message, &message);
}

std::int32_t MessageDriver::SendRaw(const char* caller, const char* selector, SPMessageData* message) {
    return Send(caller, selector, message, message);
}

}  // namespace simhost
