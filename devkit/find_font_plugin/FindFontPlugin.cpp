// A plug-in of the Find Font command alone, in the plug-in's own sources: nothing in the product asks for the command
// yet, so here a message of its own does. The caller is "Find Font", the selector "Display" or "Search".
#include <cstdint>
#include <cstring>

#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
#include "frame/base/Suites.h"
#include "host/Messages.h"
#include "menus/FindFontCommand.h"

namespace {

// Not in the host's memory: no start-up allocates it.
PluginGlobals sOwnGlobals{};

void Handle(const char* selector) {
    if (std::strcmp(selector, "Display") == 0) {
        DisplayFindFontDialog();
    } else if (std::strcmp(selector, "Search") == 0) {
        CacheFindFontMenuItem();
    }
}

}  // namespace

// Always 0, so that the file can be unloaded.
extern "C" __declspec(dllexport) std::int32_t PluginMain(const char* caller, const char* selector, void* message) {
    sBasicSuite = static_cast<const SPMessageData*>(message)->basic;
    sGlobals = &sOwnGlobals;
    if (std::strcmp(caller, "Find Font") == 0) {
        AcquireSuites();
        Handle(selector);
        // A table that is given back without being held is never acquired again.
        if (SuitesAreHeld()) {
            ReleaseSuites();
        }
    }
    return 0;
}
