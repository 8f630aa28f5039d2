// The functions of the messaging library. Each records what it was called with and takes its answer from the script;
// when that is 0, the event bus does what was asked and answers itself. The two functions at the end are the host's own
// way to the bus: neither recorded nor scripted, so that a panel never uses up an answer that is meant for the plug-in.
//
// The export lists give each its public name, which is the name of its type in the host's interface.
#include <type_traits>

#include "doubles/common/OwnMemory.h"
#include "doubles/plugplug/EventBus.h"
#include "doubles/plugplug/PlugPlugDouble.h"

namespace {

using doubles::CallRecord;
using doubles::ReceivedCall;
using doubles::Return;
using Outcome = ReceivedCall::Outcome;

// Records what the script says or, when it lets the call through, what the bus answers.
template <class OnTheBus>
Outcome Conclude(ReceivedCall& call, OnTheBus onTheBus) {
    const doubles::Answer& answer = call.GetAnswer();
    const bool reachesTheBus = answer.result == 0 && answer.throws == doubles::Throw::kNothing;
    return call.Conclude(reachesTheBus ? onTheBus() : answer.result);
}

Outcome Extension(const char* function, const char* extensionID) {
    const OwnMemory own;
    return ReceivedCall(ThePlugPlug(), CallRecord(function).Text("extension", extensionID)).Conclude();
}

CallRecord ListenerCall(const char* function, const char* type, PlugPlugListener listener, void* context) {
    return CallRecord(function)
        .Text("type", type)
        .Pointer("listener", reinterpret_cast<const void*>(listener))
        .Pointer("context", context);
}

Outcome AddListener(const char* type, PlugPlugListener listener, void* context) {
    const OwnMemory own;
    ThePlugPlug().listener = listener;
    ThePlugPlug().context = context;
    ReceivedCall call(ThePlugPlug(), ListenerCall("PlugPlugAddEventListener", type, listener, context));
    return Conclude(call, [&] { return plugplug::AddListener(type, listener, context); });
}

Outcome RemoveListener(const char* type, PlugPlugListener listener, void* context) {
    const OwnMemory own;
    ReceivedCall call(ThePlugPlug(), ListenerCall("PlugPlugRemoveEventListener", type, listener, context));
    return Conclude(call, [&] { return plugplug::RemoveListener(type, listener, context); });
}

CallRecord EventCall(const PlugPlugEvent* event) {
    CallRecord record("PlugPlugDispatchEvent");
    if (event == nullptr) {
        return record.Pointer("event", event);
    }
    return record.Text("type", event->type)
        .Number("scope", event->scope)
        .Text("application", event->applicationID)
        .Text("extension", event->extensionID)
        .Text("data", event->data);
}

// Before the event is delivered: its listeners make calls of their own.
Outcome Event(const PlugPlugEvent* event) {
    const OwnMemory own;
    ThePlugPlug().lastData = event == nullptr ? nullptr : event->data;
    ReceivedCall call(ThePlugPlug(), EventCall(event));
    return Conclude(call, [event] { return plugplug::Check(event); });
}

}  // namespace

extern "C" {

std::int32_t LoadExtensionEntry(const char* extensionID) {
    return Return(Extension("PlugPlugLoadExtension", extensionID));
}

std::int32_t UnloadExtensionEntry(const char* extensionID) {
    return Return(Extension("PlugPlugUnloadExtension", extensionID));
}

std::int32_t AddEventListenerEntry(const char* type, PlugPlugListener listener, void* context) {
    return Return(AddListener(type, listener, context));
}

std::int32_t RemoveEventListenerEntry(const char* type, PlugPlugListener listener, void* context) {
    return Return(RemoveListener(type, listener, context));
}

std::int32_t DispatchEventEntry(const PlugPlugEvent* event) {
    const std::int32_t result = Return(Event(event));
    return result != 0 ? result : plugplug::Dispatch(event);
}

std::int32_t HostAddEventListenerEntry(const char* type, PlugPlugListener listener, void* context) {
    return plugplug::AddListener(type, listener, context);
}

std::int32_t HostDispatchEventEntry(const PlugPlugEvent* event) { return plugplug::Dispatch(event); }

}  // extern "C"

static_assert(std::is_same_v<decltype(&LoadExtensionEntry), PlugPlugLoadExtension>);
static_assert(std::is_same_v<decltype(&UnloadExtensionEntry), PlugPlugUnloadExtension>);
static_assert(std::is_same_v<decltype(&AddEventListenerEntry), PlugPlugAddEventListener>);
static_assert(std::is_same_v<decltype(&RemoveEventListenerEntry), PlugPlugRemoveEventListener>);
static_assert(std::is_same_v<decltype(&DispatchEventEntry), PlugPlugDispatchEvent>);
