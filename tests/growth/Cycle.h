// One life of a plug-in in this process: it is loaded, started, stopped and unloaded, and really goes away, with the
// libraries that it has loaded. The host is another one each time.
//
// Thread: main.
#pragma once

#include <filesystem>

#include "doubles/host/Host.h"
#include "simhost/plugin/MessageDriver.h"
#include "simhost/plugin/PluginModule.h"

namespace growth {

// The libraries that lie beside this program, as the plug-in finds them.
struct Libraries {
    std::filesystem::path pluginCore;
    std::filesystem::path messaging;

    static Libraries BesideProgram();
};

// A host, and a plug-in that is loaded and started; the second tick has found the messaging library.
struct StartedPlugin {
    explicit StartedPlugin(const std::filesystem::path& file);

    void Tick();
    // Notifies the plug-in as often as it has registered for the type.
    void Notify(const std::string& type, void* data);
    // Stops the plug-in and unloads it. Throws std::runtime_error when a rule of the host was broken.
    void End(const Libraries& libraries);

    simhost::SimulatedHost host;
    std::filesystem::path path;
    simhost::PluginModule module;
    simhost::MessageDriver driver;
    int rounds = 0;  // that were sent, see Messages.h
};

void LiveThrough(const std::filesystem::path& plugin, const Libraries& libraries);

// What a plug-in that does nothing does not do: loads the libraries, and frees them.
void LoadAndFree(const Libraries& libraries);

}  // namespace growth
