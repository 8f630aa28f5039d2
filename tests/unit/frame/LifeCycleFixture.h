// A plug-in of which start-up and shut-down are called without the dispatch, with Windows' hooks counted and not set.
#pragma once

#include "frame/base/Suites.h"
#include "frame/LifeCycle.h"
#include "unit/frame/FrameFixture.h"

inline int sHooksInstalled = 0;
inline int sHooksRemoved = 0;

inline HHOOK WINAPI CountSetHook(int, HOOKPROC, HINSTANCE, DWORD) {
    ++sHooksInstalled;
    return reinterpret_cast<HHOOK>(0x77);
}
inline BOOL WINAPI CountUnhook(HHOOK) {
    ++sHooksRemoved;
    return TRUE;
}

class LifeCycleTest : public FrameTest {
  protected:
    LifeCycleTest() {
        sHooksInstalled = 0;
        sHooksRemoved = 0;
        LoadFakePluginCore();
        // As the dispatch and the handler of "Startup" leave things before they call an operation.
        sBasicSuite = TestHost::Basic();
        AcquireSuites();
        sPluginCoreIsUsable = true;
        ClearRecords();
    }

    std::int32_t CallStartup() {
        SPInterfaceMessage message{host.MessageData()};
        const std::int32_t result = StartupPlugin(&message);
        host.globals = message.d.globals;
        return result;
    }

    std::int32_t CallShutdown() {
        SPMessageData message = host.MessageData();
        const std::int32_t result = ShutdownPlugin(&message);
        host.globals = message.globals;
        return result;
    }

    static std::string OwnPath() { return FakePluginCorePath(); }

    ImportPatch setHook{"SetWindowsHookExW", AsReplacement(CountSetHook)};
    ImportPatch unhook{"UnhookWindowsHookEx", AsReplacement(CountUnhook)};
};
