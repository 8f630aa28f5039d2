#include "documents/CurrentDocument.h"
#include "documents/DocumentRegistry.h"
#include "documents/FontUsageScan.h"
#include "frame/NotifierHandlers.h"
#include "plugincore/PCILoader.h"
#include "support/ResultCodes.h"

std::int32_t HandleDocumentAboutToCloseNotifier(AINotifierMessage* message) {
    return WithNotifyDataLogged("HandleDocumentAboutToCloseNotifier", message, [&] {
        // Only the current document can be scanned.
        if (PluginCoreIsEnabled() && CurrentDocument() == message->notifyData) {
            SetFontUsageForDocumentHandle(static_cast<AIDocumentHandle>(message->notifyData),
                                          CurrentDocumentFontUsage());
        }
        return kNoErr;
    });
}
