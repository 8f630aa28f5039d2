#include "support/plugincore/FakePluginCore.h"

#include <windows.h>

#include "plugincore/PCILoader.h"
#include "support/isolation/BeforeEachTest.h"

namespace {

const BeforeEachTest kReset(ResetFakePluginCore);

}  // namespace

void ResetFakePluginCore() {
    ThePluginCore() = PluginCoreDouble();
    ThePluginCore().calls.LeaveOut("PluginIsEnabled");
    ThePluginCore().script["CreateMenusFromJSONBuffer"].createsItems = false;
}

std::string FakePluginCorePath() {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    return path;
}

void LoadFakePluginCore() { PCILoader::LoadSharedInstance(FakePluginCorePath()); }
