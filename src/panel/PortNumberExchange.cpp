#include "panel/PortNumberExchange.h"

#include <string>
#include <string_view>

#include "panel/PlugPlugBridge.h"
#include "plugincore/PCILoader.h"
#include "support/ResultCodes.h"
#include "support/UntilUnloaded.h"

namespace {

constexpr std::string_view kBeforePort = "<payload><number>";
constexpr std::string_view kAfterPort = "</number></payload>";
constexpr std::size_t kLongestReply = kBeforePort.size() + 10 + kAfterPort.size();  // 4294967295 has ten digits

// The one messaging state of the process; the PluginCore keeps its address. Written by every attempt to load, and never
// given back.
PlugPlugState sPlugPlug;

// Set once the listener is in place, never cleared: the bus keeps the listener also when the host has shut the plug-in
// down and frees its file. Nothing is called that is gone, because the plug-in holds a reference to its own module
// (PluginInfo), which keeps it in memory.
bool sListenerIsRegistered = false;

// The bus calls this from its own code, built by another compiler: nothing may leave it. A request that cannot be
// answered stays without an answer, and the panel asks again.
void AnswerPortNumberRequest(const PlugPlugEvent* /*event*/, void* /*context*/) noexcept {
    try {
        SendPortNumberResponse();
    } catch (...) {
    }
}

// Kept: the event that was dispatched last points into it.
const UntilUnloaded<std::string> sReplyText;

// Reserved for the longest text, so that a request which arrives while a response is being delivered leaves that one
// readable.
std::string& ReplyText() {
    sReplyText->reserve(kLongestReply);
    return *sReplyText;
}

void ListenToPanel() {
    if (PlugPlugBridge::Load(sPlugPlug) != kNoErr) {
        return;
    }
    const std::int32_t refusal =
        PlugPlugBridge::AddEventListener(sPlugPlug, "com.quorvel.portnumberrequest", AnswerPortNumberRequest, nullptr);
    // At once: should the PluginCore throw, the listener must not be added again. The panel then has to ask.
    sListenerIsRegistered = refusal == kNoErr;
    // The PluginCore gets the bus also when the listener was refused.
    if (const PCILoader* const pluginCore = PCILoader::GetSharedInstance()) {
        pluginCore->pfRegisterPlugPlug(&sPlugPlug);
    }
    if (sListenerIsRegistered) {
        SendPortNumberResponse();
    }
}

}  // namespace

std::int32_t RegisterPortNumberListener() {
    if (!sListenerIsRegistered) {
        try {
            ListenToPanel();
        } catch (...) {
            // Silent like every failure here: the tick goes on, and the next one tries again if it has to.
        }
    }
    return kNoErr;
}

void SendPortNumberResponse() {
    const PCILoader* const pluginCore = PCILoader::GetSharedInstance();
    std::uint32_t port = 0;
    if (pluginCore == nullptr || pluginCore->pfGetSocketPort(&port) != kNoErr) {
        return;
    }
    std::string& reply = ReplyText();
    reply.assign(kBeforePort).append(std::to_string(port)).append(kAfterPort);
    const PlugPlugEvent event{"com.quorvel.portnumberresponse", kPlugPlugApplicationScope, "test", nullptr,
                              reply.c_str()};
    // A panel that was not reached asks again.
    PlugPlugBridge::DispatchEvent(sPlugPlug, event);
}
