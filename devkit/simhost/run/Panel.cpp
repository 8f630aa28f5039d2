#include "simhost/run/Panel.h"

#include <utility>

#include "doubles/host/Host.h"
#include "simhost/plugin/MessageDriver.h"
#include "simhost/run/FlightRecorder.h"

namespace simhost {

namespace {

// Releases of the host differ in the library's name; where both are, the host uses the newer one.
HMODULE LoadMessagingLibrary(const std::filesystem::path& folder) {
    for (const wchar_t* const name : {L"PlugPlugOwl.dll", L"PlugPlug.dll"}) {
        if (std::filesystem::exists(folder / name)) {
            return LoadLibraryW((folder / name).c_str());
        }
    }
    return nullptr;
}

template <class Function>
Function Find(HMODULE library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

std::optional<std::string> CopyOf(const char* text) {
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

std::string InWords(const std::optional<std::string>& text) { return text ? "\"" + *text + "\"" : "null"; }

}  // namespace

bool Panel::Open() {
    if (mDispatch != nullptr) {
        return true;
    }
    const HMODULE library = LoadMessagingLibrary(mHostFolder);
    const auto listen = library == nullptr ? nullptr : Find<PlugPlugAddEventListener>(library, "HostAddEventListener");
    if (listen == nullptr || listen("com.quorvel.portnumberresponse", &OnEvent, this) != 0) {
        return false;
    }
    mDispatch = Find<PlugPlugDispatchEvent>(library, "HostDispatchEvent");
    return mDispatch != nullptr;
}

std::int32_t Panel::RequestPort() const {
    const PlugPlugEvent request{"com.quorvel.portnumberrequest", kPlugPlugApplicationScope, "simhost", "panel", ""};
    RecordMessage("from the panel, a request for the port");
    try {
        const std::int32_t answer = mDispatch(&request);
        RecordMessage("");
        return answer;
    } catch (...) {
        Host().rules.Broken(Rule::kCrash, "the panel's request: an exception left the plug-in");
        throw HostLost();
    }
}

std::vector<PanelEvent> Panel::TakeEvents() { return std::exchange(mEvents, {}); }

// Goes through the place of the host's operations, which knows on which thread the host is to be called.
void Panel::OnEvent(const PlugPlugEvent* event, void* context) {
    Host().operations.Begin("Panel", "OnEvent");
    auto& panel = *static_cast<Panel*>(context);
    panel.mLastTold = CopyOf(event->data);
    panel.mEvents.push_back({CopyOf(event->type), event->scope, CopyOf(event->applicationID),
                             CopyOf(event->extensionID), CopyOf(event->data)});
}

std::string Describe(const PanelEvent& event) {
    return "type " + InWords(event.type) + ", scope " + std::to_string(event.scope) + ", application " +
           InWords(event.application) + ", extension " + InWords(event.extension) + ", data " + InWords(event.data);
}

}  // namespace simhost
