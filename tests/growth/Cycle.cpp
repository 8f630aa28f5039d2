#include "growth/Cycle.h"

#include <windows.h>

#include <stdexcept>
#include <string>

#include "simhost/checks/ImportWatch.h"
#include "simhost/plugin/AllReferences.h"

namespace growth {

Libraries Libraries::BesideProgram() {
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::filesystem::path folder = std::filesystem::path(program).parent_path();
    return {folder / L"PluginCoreX64.dll", folder / L"PlugPlugOwl.dll"};
}

StartedPlugin::StartedPlugin(const std::filesystem::path& file) : path(file), module(file), driver(module) {
    simhost::WatchImports(module.Module());
    driver.SendInterface("Startup");
    Tick();
    Tick();
}

void StartedPlugin::Tick() {
    for (void* const timer : host.model.ActiveTimers()) {
        driver.SendTick(timer);
    }
}

void StartedPlugin::Notify(const std::string& type, void* data) {
    // A copy: a handler may register more.
    const auto notifiers = host.model.notifiers.Objects();
    for (const auto& [handle, notifier] : notifiers) {
        if (notifier.type == type) {
            driver.SendNotification(reinterpret_cast<void*>(handle), type, data);
        }
    }
}

void StartedPlugin::End(const Libraries& libraries) {
    driver.SendInterface("Shutdown");
    if (driver.SendAccess("Unload") != 0) {
        throw std::runtime_error("the plug-in does not want to be unloaded");
    }
    // Plug-in first: its own reference to itself goes with it.
    module.Unload();
    for (const std::filesystem::path& file : {path, libraries.messaging, libraries.pluginCore}) {
        simhost::FreeAllReferences(file);
    }
    // What the watch has noted would grow.
    simhost::TakeMessagingLoads();
    host.ReportLeftovers();
    for (const simhost::Violation& violation : host.rules.Violations()) {
        throw std::runtime_error(std::string(simhost::NameOf(violation.rule)) + ": " + violation.text);
    }
}

void LiveThrough(const std::filesystem::path& plugin, const Libraries& libraries) {
    StartedPlugin started(plugin);
    started.End(libraries);
}

void LoadAndFree(const Libraries& libraries) {
    for (const std::filesystem::path& file : {libraries.pluginCore, libraries.messaging}) {
        LoadLibraryW(file.c_str());
    }
    for (const std::filesystem::path& file : {libraries.messaging, libraries.pluginCore}) {
        simhost::FreeAllReferences(file);
    }
}

}  // namespace growth
