// The functions of the messaging library. Each records what it was called with and takes its answer from the script;
// when that is 0, the event bus does what was asked and answers itself. The two functions at the end are the host's own
// way to the bus: neither recorded nor scripted, so that a panel never uses up an answer that is meant for the plug-in.
//
// The export lists give each its public name, which is the name of its type in the host's interface.
#include <type_traits>

#include "doubles/common/AnswerScript.h"
#include "doubles/common/CallRecord.h"
#include "doubles/common/ForeignException.h"
#include "doubles/plugplug/EventBus.h"

namespace {

bool HasNoOwnKey(const std::string&, const nlohmann::json&) { return false; }

// What the script says, or, when it lets the call through, what the bus does.
template <class OnTheBus>
BasicAnswer NextAnswer(const char* function, OnTheBus onTheBus) {
    BasicAnswer answer = NextBasicAnswer(function, &HasNoOwnKey);
    if (answer.result == 0 && answer.throws == Throw::kNothing) {
        answer.result = onTheBus();
    }
    return answer;
}

BasicAnswer Conclude(const CallRecord& record, BasicAnswer answer) {
    record.Write(answer.result);
    return answer;
}

// Nothing is left to clean up any more, so that an exception can be thrown.
std::int32_t Return(BasicAnswer answer) {
    ThrowAsAsked(answer.throws);
    return answer.result;
}

BasicAnswer RecordExtension(const char* function, const char* extensionID) {
    const auto nothingToDo = [] { return 0; };
    return Conclude(CallRecord(function).Text("extension", extensionID), NextAnswer(function, nothingToDo));
}

template <class OnTheBus>
BasicAnswer RecordListener(const char* function, const char* type, PlugPlugListener listener, void* context,
                           OnTheBus onTheBus) {
    const CallRecord record = CallRecord(function)
                                  .Text("type", type)
                                  .Pointer("listener", reinterpret_cast<const void*>(listener))
                                  .Pointer("context", context);
    return Conclude(record, NextAnswer(function, [&] { return onTheBus(type, listener, context); }));
}

// Before the event is delivered: its listeners make calls of their own.
BasicAnswer RecordEvent(const PlugPlugEvent* event) {
    constexpr const char* kFunction = "PlugPlugDispatchEvent";
    CallRecord record(kFunction);
    if (event == nullptr) {
        record.Pointer("event", event);
    } else {
        record.Text("type", event->type)
            .Number("scope", event->scope)
            .Text("application", event->applicationID)
            .Text("extension", event->extensionID)
            .Text("data", event->data);
    }
    return Conclude(record, NextAnswer(kFunction, [event] { return plugplug::Check(event); }));
}

}  // namespace

extern "C" {

std::int32_t LoadExtensionEntry(const char* extensionID) {
    return Return(RecordExtension("PlugPlugLoadExtension", extensionID));
}

std::int32_t UnloadExtensionEntry(const char* extensionID) {
    return Return(RecordExtension("PlugPlugUnloadExtension", extensionID));
}

std::int32_t AddEventListenerEntry(const char* type, PlugPlugListener listener, void* context) {
    return Return(RecordListener("PlugPlugAddEventListener", type, listener, context, &plugplug::AddListener));
}

std::int32_t RemoveEventListenerEntry(const char* type, PlugPlugListener listener, void* context) {
    return Return(RecordListener("PlugPlugRemoveEventListener", type, listener, context, &plugplug::RemoveListener));
}

std::int32_t DispatchEventEntry(const PlugPlugEvent* event) {
    const std::int32_t result = Return(RecordEvent(event));
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
