// What surrounds a started plug-in, for tests of the menus: a host whose suites are held, a fake PluginCore and a
// globals block.
#pragma once

#include <cstdio>

#include "frame/base/PluginGlobals.h"
#include "support/host/HostFixture.h"
#include "support/Log.h"
#include "support/plugincore/FakePluginCore.h"

class MenuTest : public HostTest {
  protected:
    MenuTest() {
        LoadFakePluginCore();
        globals.plugin = host.plugin;
        sGlobals = &globals;
        ClearRecordedLog();
    }
    ~MenuTest() override { sGlobals = nullptr; }

    static const std::vector<std::string>& PluginCoreCalls() { return ThePluginCore().calls.Calls(); }

    PluginGlobals globals{};
};

// An item's key in the registry.
inline std::uintptr_t KeyOf(AIMenuItemHandle item) { return reinterpret_cast<std::uintptr_t>(item); }

// As the log shows a handle or address.
inline std::string Shown(const void* address) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08x", Low32(address));
    return text;
}
