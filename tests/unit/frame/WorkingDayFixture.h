// A day of the plug-in with a fake PluginCore: one message of each kind, and the entries that each calls.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/plugplug/FakePlugPlug.h"
#include "support/ResultCodes.h"
#include "unit/frame/LifeCycleFixture.h"

using Names = std::vector<std::string>;

inline const Names kMessages = {"start-up", "new",  "open restricted", "open",  "menu update", "menu choice", "changed",
                                "save",     "tick", "about to close",  "close", "about",       "shut-down"};

// The entries that each message calls in a complete library.
inline const std::map<std::string, Names> kCallsOfADay = {
    {"start-up",
     {"GetAPIVersion", "InitializePluginCoreInterface", "GetMenus", "CreateMenusFromJSONBuffer", "PluginIsEnabled",
      "GetAPIVersion", "GetSettings"}},
    {"new", {"PluginIsEnabled", "HandleCreateNewDocument"}},
    {"open restricted", {"PluginIsEnabled", "HandleOpenExistingDocument", "InvokeRestrictedFontsDialog"}},
    {"open",
     {"PluginIsEnabled", "HandleOpenExistingDocument", "GetSettings", "InvokeResolveDialog", "ActivateChosenFonts"}},
    {"menu update", {"GetMenus"}},
    {"menu choice", {"GetIDForDocument", "UpdateDocumentFontUsage", "HandleMenuSelection"}},
    {"changed", {"PluginIsEnabled"}},
    {"save", {"PluginIsEnabled", "HandleSaveDocument"}},
    {"tick", {"PluginIsEnabled", "RegisterPlugPlug", "GetSocketPort", "IdleEvent", "ProcessPanelMessages"}},
    {"about to close", {"PluginIsEnabled"}},
    {"close", {"PluginIsEnabled", "HandleCloseDocument"}},
    {"about", {"InvokeCommandDialog"}},
    {"shut-down", {"TerminatePluginCoreInterface", "GetAPIVersion", "GetSettings"}},
};

inline int WINAPI PressOk(HWND, LPCSTR, LPCSTR, UINT) { return IDOK; }

// Nothing is loaded yet, and no message has arrived.
class WorkingDayTest : public FrameTest {
  protected:
    WorkingDayTest() {
        ThePluginCore().calls.Show("PluginIsEnabled");
        host.currentPath = "C:/a.ai";
        sHooksInstalled = 0;
    }

    // Names without arguments.
    static Names NamesOf(const std::vector<std::string>& calls) {
        Names names;
        for (const std::string& call : calls) {
            names.push_back(call.substr(0, call.find('(')));
        }
        return names;
    }

    // Sends the message; nothing when the plug-in is not registered for it, as no host would send that.
    std::int32_t Perform(const std::string& message) {
        const std::map<std::string, std::function<std::int32_t()>> performers = {
            {"start-up", [&] { return Startup(); }},
            {"new", [&] { return Tell(&PluginGlobals::documentNew); }},
            {"open restricted",
             [&] {
                 ThePluginCore().script["HandleOpenExistingDocument"].result = kRestrictedFonts;
                 const std::int32_t result = Tell(&PluginGlobals::documentOpened);
                 ThePluginCore().script["HandleOpenExistingDocument"].result = kNoErr;
                 return result;
             }},
            {"open", [&] { return Tell(&PluginGlobals::documentOpened); }},
            {"menu update", [&] { return SendMenu("AI Update"); }},
            {"menu choice", [&] { return SendMenu("AI Go"); }},
            {"changed", [&] { return Tell(&PluginGlobals::documentChanged); }},
            {"save", [&] { return Tell(&PluginGlobals::documentSaved); }},
            {"tick", [&] { return Send("AI Timer", "AI Go"); }},
            {"about to close", [&] { return Tell(&PluginGlobals::documentAboutToClose); }},
            {"close", [&] { return Tell(&PluginGlobals::documentClosed); }},
            {"about", [&] { return Send("SP Interface", "About"); }},
            {"shut-down", [&] { return Send("SP Interface", "Shutdown"); }},
        };
        return performers.at(message)();
    }

    LoadablePlugPlug plugPlug;
    ImportPatch box{"MessageBoxA", AsReplacement(PressOk)};
    ImportPatch setHook{"SetWindowsHookExW", AsReplacement(CountSetHook)};
    ImportPatch unhook{"UnhookWindowsHookEx", AsReplacement(CountUnhook)};

  private:
    std::int32_t Tell(AINotifierHandle PluginGlobals::*notifier) {
        const auto* const globals = static_cast<PluginGlobals*>(host.globals);
        if (globals == nullptr || globals->*notifier == nullptr) {
            return 0;
        }
        AINotifierMessage message{host.MessageData(), globals->*notifier, "type", host.currentDocument};
        return Send("AI Notifier", "AI Notify", &message.d);
    }

    std::int32_t SendMenu(const char* selector) {
        if (host.globals == nullptr) {
            return 0;
        }
        AIMenuMessage message{host.MessageData(), host.AddItem("Fonts")};
        return Send("AI Menu", selector, &message.d);
    }
};
