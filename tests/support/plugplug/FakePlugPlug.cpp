#include "support/plugplug/FakePlugPlug.h"

#include <string_view>

#include "doubles/common/OwnMemory.h"
#include "doubles/plugplug/EventBus.h"
#include "support/isolation/BeforeEachTest.h"

namespace {

HMODULE(WINAPI* sRealLoadLibrary)(LPCWSTR) = nullptr;

HMODULE WINAPI LoadThisProgramAsPlugPlug(LPCWSTR path) {
    if (!std::wstring_view(path).ends_with(L"PlugPlug.dll")) {
        return sRealLoadLibrary(path);
    }
    const OwnMemory own;
    doubles::ReceivedCall call(ThePlugPlug(), doubles::CallRecord("LoadLibraryW"));
    return call.Conclude().result == 0 ? GetModuleHandleW(nullptr) : nullptr;
}

void ResetFakePlugPlug() {
    ThePlugPlug() = PlugPlugDouble();
    plugplug::RemoveAllListeners();
}

const BeforeEachTest kReset(ResetFakePlugPlug);

}  // namespace

void SendPanelRequest() {
    const PlugPlugEvent request{"com.quorvel.portnumberrequest", 1, "panel", nullptr, "<payload/>"};
    ThePlugPlug().listener(&request, ThePlugPlug().context);
}

LoadablePlugPlug::LoadablePlugPlug() : mPatch("LoadLibraryW", AsReplacement(LoadThisProgramAsPlugPlug)) {
    sRealLoadLibrary = mPatch.Original<decltype(sRealLoadLibrary)>();
}
