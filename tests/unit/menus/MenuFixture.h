// A started plug-in's surroundings for tests of the menus: a fake host whose suites are held, a fake PluginCore and a
// globals block.
#pragma once

#include <cstdio>

#include "frame/base/PluginGlobals.h"
#include "support/Log.h"
#include "support/plugincore/FakePluginCore.h"
#include "unit/documents/HostFixture.h"

class MenuTest : public HostTest {
  protected:
    MenuTest() {
        LoadFakePluginCore();
        globals.plugin = host.plugin;
        sGlobals = &globals;
        ClearRecordedLog();
    }
    ~MenuTest() override { sGlobals = nullptr; }

    // The menu suite and its like are acquired for a moment: on every way out they go back.
    void TearDown() override {
        HostTest::TearDown();
        EXPECT_EQ(host.HeldSuites(), (std::map<std::string, int>{}));
    }

    static const std::vector<std::string>& PluginCoreCalls() { return ThePluginCore().calls.Calls(); }

    PluginGlobals globals{};
};

// As the log shows a handle or address.
inline std::string Shown(const void* address) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08x", Low32(address));
    return text;
}
