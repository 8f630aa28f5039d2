#include "support/fakes/FakePlugPlug.h"

#include <string_view>

namespace {

HMODULE(WINAPI* sRealLoadLibrary)(LPCWSTR) = nullptr;

// Answers a failure when the test wants one.
HMODULE WINAPI LoadThisProgramAsPlugPlug(LPCWSTR path) {
    if (!std::wstring_view(path).ends_with(L"PlugPlug.dll")) {
        return sRealLoadLibrary(path);
    }
    return ThePlugPlug().calls.Record("LoadLibraryW", "") == 0 ? GetModuleHandleW(nullptr) : nullptr;
}

std::string Described(const PlugPlugEvent& event) {
    return Quoted(event.type) + ", " + std::to_string(event.scope) + ", " + Quoted(event.applicationID) + ", " +
           Quoted(event.extensionID) + ", " + Quoted(event.data);
}

}  // namespace

FakePlugPlug& ThePlugPlug() {
    static FakePlugPlug plugPlug;
    return plugPlug;
}

void FakePlugPlug::SendRequest() const {
    const PlugPlugEvent request{"com.quorvel.portnumberrequest", 1, "panel", nullptr, "<payload/>"};
    listener(&request, context);
}

LoadablePlugPlug::LoadablePlugPlug() : mPatch("LoadLibraryW", AsReplacement(LoadThisProgramAsPlugPlug)) {
    sRealLoadLibrary = mPatch.Original<decltype(sRealLoadLibrary)>();
}

// The host's header gives the types of these functions the names that they are exported by.
namespace exported {

#define FUNCTION extern "C" __declspec(dllexport) std::int32_t

FUNCTION PlugPlugLoadExtension(const char* extensionID) {
    return ThePlugPlug().calls.Record("PlugPlugLoadExtension", Quoted(extensionID));
}
FUNCTION PlugPlugUnloadExtension(const char* extensionID) {
    return ThePlugPlug().calls.Record("PlugPlugUnloadExtension", Quoted(extensionID));
}
FUNCTION PlugPlugAddEventListener(const char* type, PlugPlugListener listener, void* context) {
    ThePlugPlug().listener = listener;
    ThePlugPlug().context = context;
    const std::int32_t answer = ThePlugPlug().calls.Record(
        "PlugPlugAddEventListener", Quoted(type) + (context == nullptr ? ", null" : ", context"));
    if (const auto during = ThePlugPlug().duringListening) {
        during();
    }
    return answer;
}
FUNCTION PlugPlugRemoveEventListener(const char* type, PlugPlugListener, void*) {
    return ThePlugPlug().calls.Record("PlugPlugRemoveEventListener", Quoted(type));
}
FUNCTION PlugPlugDispatchEvent(const PlugPlugEvent* event) {
    ThePlugPlug().lastData = event->data;
    const std::int32_t answer = ThePlugPlug().calls.Record("PlugPlugDispatchEvent", Described(*event));
    // A copy: what is called may replace it.
    if (const auto during = ThePlugPlug().duringDispatch) {
        during();
    }
    return answer;
}

}  // namespace exported
