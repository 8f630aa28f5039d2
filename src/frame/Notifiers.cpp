#include "frame/Notifiers.h"

#include <array>

#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
#include "frame/NotifierHandlers.h"
#include "host/NotifierSuite.h"
#include "support/Log.h"
#include "support/ResultCodes.h"

namespace {

struct Registration {
    const char* name;
    const char* type;
    AINotifierHandle PluginGlobals::*handle;
    const char* progressLine;
};

// In the order in which they are added.
constexpr std::array kRegistrations = {
    Registration{"Change!", "AI Document Changed Notifier", &PluginGlobals::documentChanged,
                 "...adding Change notifier"},
    Registration{"Open!", "AI Document Opened Notifier", &PluginGlobals::documentOpened, "...adding Open notifier"},
    Registration{"AboutToClose!", "AI Document About To Close Notifier", &PluginGlobals::documentAboutToClose,
                 "...adding AboutToClose notifier"},
    Registration{"Close!", "AI Document Closed Notifier", &PluginGlobals::documentClosed, "...adding Close notifier"},
    Registration{"New!", "AI Document New Notifier", &PluginGlobals::documentNew, "...adding DocumentNew notifier"},
    Registration{"Startup", "AI Application Started Notifier", &PluginGlobals::applicationStarted,
                 "...adding Startup notifier"},
    Registration{"Shutdown", "AI Application Shutdown Notifier", &PluginGlobals::applicationShutdown,
                 "...adding Shutdown notifier"},
    Registration{"font-list change", "AI Font List Changed Notifier", &PluginGlobals::fontListChanged,
                 "...adding font-list changed notifier"},
    Registration{"Menu Changed", "AI Menu Changed Notifier", &PluginGlobals::menuChanged,
                 "...adding Menu Changed notifier"},
    Registration{"Save", "AI Command Notifier: After Save", &PluginGlobals::documentSaved, "...adding Save notifier"},
    Registration{"Save As", "AI Command Notifier: After Save As", &PluginGlobals::documentSavedAs,
                 "...adding Save As notifier"},
};

struct Route {
    AINotifierHandle PluginGlobals::*handle;
    std::int32_t (*handler)(AINotifierMessage* message);
};

// In the order in which they are compared. "Menu Changed" has no handler on purpose: its arrival is only logged.
constexpr std::array kRoutes = {
    Route{&PluginGlobals::applicationStarted, HandleStartupNotifier},
    Route{&PluginGlobals::applicationShutdown, HandleShutdownNotifier},
    Route{&PluginGlobals::documentOpened, HandleDocumentOpenedNotifier},
    Route{&PluginGlobals::documentAboutToClose, HandleDocumentAboutToCloseNotifier},
    Route{&PluginGlobals::documentClosed, HandleDocumentClosedNotifier},
    Route{&PluginGlobals::documentNew, HandleDocumentNewNotifier},
    Route{&PluginGlobals::documentChanged, HandleDocumentChangedNotifier},
    Route{&PluginGlobals::documentSaved, HandleDocumentSavedNotifier},
    Route{&PluginGlobals::documentSavedAs, HandleDocumentSavedNotifier},
    Route{&PluginGlobals::fontListChanged, HandleFontListChangedNotifier},
};

std::int32_t RegisterAll(SPPluginRef plugin) {
    MomentarySuite<AINotifierSuite> notifiers(kAINotifierSuite, kAINotifierSuiteVersion);
    try {
        LogMessage(kLogNote, "...acquiring notifier suite");
        notifiers.AcquireOrThrow();
        for (const Registration& row : kRegistrations) {
            LogMessage(kLogNote, "%s", row.progressLine);
            ThrowIfError(notifiers->AddNotifier(plugin, row.name, row.type, &(sGlobals->*row.handle)));
        }
    } catch (std::int32_t code) {
        LogMessage(kLogNote, "...exception caught while adding notifiers");
        return code;
    }
    return kNoErr;
}

std::int32_t CallHandler(AINotifierMessage* message) {
    // Without a globals block nothing is registered, and no handle can match.
    if (sGlobals != nullptr && message->notifier != nullptr) {
        for (const Route& route : kRoutes) {
            if (sGlobals->*route.handle == message->notifier) {
                return route.handler(message);
            }
        }
    }
    LogMessage(kLogNote, "UNHANDLED NOTIFIER MESSAGE TYPE:  %s", message->type);
    return kNoErr;
}

}  // namespace

std::int32_t AddNotifiers(SPInterfaceMessage* message) {
    constexpr const char* kName = "AddNotifiers";
    LogMessage(kLogEntry, "Entering %s", kName);
    const std::int32_t result = message == nullptr ? kBadParameterErr : RegisterAll(message->d.self);
    LogMessage(kLogExit, "Exiting %s, return code %d", kName, result);
    return result;
}

std::int32_t GoNotifier(AINotifierMessage* message) {
    return WithNotifierLogged("GoNotifier", message, [&] { return CallHandler(message); });
}
