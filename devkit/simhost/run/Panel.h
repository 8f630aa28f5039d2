// The font manager's panel in the host: it asks the plug-in over the event bus of the host's messaging library, with no
// message to the plug-in, and keeps what it is told.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "plugincore/PluginCore.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

class Panel {
  public:
    // Of a host whose program lies in that folder; the messaging library is loaded when it is first needed.
    explicit Panel(std::filesystem::path hostFolder) : mHostFolder(std::move(hostFolder)) {}
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    // From now on it hears what the plug-in tells. False when the host has no messaging library that can be used.
    // Opening it twice is harmless.
    bool Open();

    // Asks for the port; answers what the bus answers. Throws HostLost when an exception leaves the plug-in. The panel
    // must be open.
    std::int32_t RequestPort() const;

    // The data of what it was told last; nothing when it was told nothing yet.
    const std::optional<std::string>& LastTold() const { return mLastTold; }
    // What it was told since the last call, in order.
    std::vector<PanelEvent> TakeEvents();

  private:
    static void OnEvent(const PlugPlugEvent* event, void* context);

    std::filesystem::path mHostFolder;
    PlugPlugDispatchEvent mDispatch = nullptr;  // set once it is open
    std::vector<PanelEvent> mEvents;
    std::optional<std::string> mLastTold;
};

// In one line, for people.
std::string Describe(const PanelEvent& event);

}  // namespace simhost
