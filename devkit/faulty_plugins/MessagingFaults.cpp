#include "MessagingFaults.h"

#include <windows.h>

#include <stdexcept>

#include "doubles/common/Thread.h"
#include "plugincore/PluginCore.h"

namespace {

template <class Function>
Function Find(const char* name) {
    const HMODULE library = LoadLibraryW(L"PlugPlugOwl.dll");
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

void Listen(PlugPlugListener listener) {
    Find<PlugPlugAddEventListener>("PlugPlugAddEventListener")("com.quorvel.portnumberrequest", listener, nullptr);
}

void Dispatch(const char* type) {
    const PlugPlugEvent event{type, kPlugPlugApplicationScope, "test", nullptr, "made up"};
    Find<PlugPlugDispatchEvent>("PlugPlugDispatchEvent")(&event);
}

}  // namespace

void LoadMessagingLibrary() { LoadLibraryW(L"PlugPlugOwl.dll"); }

void ListenToPanel() {
    Listen([](const PlugPlugEvent*, void*) {});
}

void ThrowAtPanel() {
    Listen([](const PlugPlugEvent*, void*) { throw std::runtime_error("not for the bus"); });
}

void TellPanel() { Dispatch("com.quorvel.portnumberresponse"); }

void TellPanelOnOtherThread() { const Thread other(&TellPanel); }

void DispatchWithoutType() { Dispatch(nullptr); }
