// What the plug-in does when the host reports an event. Each handler returns a 32-bit code, kBadParameterErr for a null
// message.
// Thread: main.
#pragma once

#include <cstdint>

#include "host/Messages.h"
#include "support/Log.h"

// Logs only; 0.
std::int32_t HandleStartupNotifier(AINotifierMessage* message);
// Shuts the plug-in down; 0 whatever shut-down says. The host's own shut-down message then finds nothing to do.
std::int32_t HandleShutdownNotifier(AINotifierMessage* message);
// Logs only; 0.
std::int32_t HandleFontListChangedNotifier(AINotifierMessage* message);

// Records the document and has the PluginCore activate its fonts. The resolve dialog's result, 0 when it is not shown.
std::int32_t HandleDocumentOpenedNotifier(AINotifierMessage* message);
// Tells the PluginCore; 0.
std::int32_t HandleDocumentNewNotifier(AINotifierMessage* message);
// Records what the current document uses now; 0.
std::int32_t HandleDocumentChangedNotifier(AINotifierMessage* message);
// Records what the document uses, the last time that it can be scanned; 0.
std::int32_t HandleDocumentAboutToCloseNotifier(AINotifierMessage* message);
// Tells the PluginCore what the closed document used and forgets it; 0.
std::int32_t HandleDocumentClosedNotifier(AINotifierMessage* message);
// Tells the PluginCore what the saved document uses. The result of asking the host for the document's path.
std::int32_t HandleDocumentSavedNotifier(AINotifierMessage* message);

// Runs `body`, whose result is the handler's, between the log lines of a handler that shows the notifier handle.
template <class Body>
std::int32_t WithNotifierLogged(const char* name, const AINotifierMessage* message, Body body) {
    if (message == nullptr) {
        return kBadParameterErr;
    }
    LogMessage(kLogEntry, "Entering %s(message->notifier = 0x%08x)", name, Low32(message->notifier));
    const std::int32_t result = body();
    LogMessage(kLogExit, "%s returning %d", name, result);
    return result;
}

// The same for a handler that shows the notification's data.
template <class Body>
std::int32_t WithNotifyDataLogged(const char* name, const AINotifierMessage* message, Body body) {
    if (message == nullptr) {
        return kBadParameterErr;
    }
    LogMessage(kLogEntry, "Entering %s(message->notifyData = 0x%08x)", name, Low32(message->notifyData));
    const std::int32_t result = body();
    LogMessage(kLogExit, "%s returning %d", name, result);
    return result;
}
