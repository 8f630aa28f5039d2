// A tick of the idle timer, and a message that the hook passes on, beside the calls that they have to make.
#include <windows.h>

#include <memory>

#include "common/Run.h"
#include "shipped/ShippedPlugin.h"

namespace {

template <class Function>
Function EntryOf(const wchar_t* library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

}  // namespace

void bench::Define(Run& run) {
    const auto plugin = std::make_shared<ShippedPlugin>();
    plugin->Start();
    const auto idle = EntryOf<std::int32_t (*)()>(L"PluginCoreX64.dll", "IdleEvent");
    const auto panel = EntryOf<std::int32_t (*)(std::uint8_t)>(L"PluginCoreX64.dll", "ProcessPanelMessages");
    const auto crtTime = EntryOf<std::int64_t (*)(std::int64_t*)>(L"msvcrt.dll", "_time64");
    constexpr const char* kFloor = "floor: the two calls, the time, three comparisons";
    run.Compare("tick", kFloor,
                {{"this plug-in", [plugin] { plugin->Tick(); }},
                 {kFloor,
                  [=] {
                      const SPMessageData message = BareMessage(nullptr);
                      message.basic->IsEqual(kCallerAITimer, kSPInterfaceCaller);
                      message.basic->IsEqual(kCallerAITimer, kCallerAITimer);
                      message.basic->IsEqual(kSelectorAIGoTimer, kSelectorAIGoTimer);
                      FILETIME now;
                      GetSystemTimeAsFileTime(&now);
                      Keep(now);
                      idle();
                      panel(1);
                  }},
                 {"the C runtime's time alone", [=] { Keep(crtTime(nullptr)); }}});
}
