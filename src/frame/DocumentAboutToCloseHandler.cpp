#include "documents/CurrentDocument.h"
#include "documents/DocumentRegistry.h"
#include "documents/FontUsageScan.h"
#include "frame/NotifierHandlers.h"
#include "plugincore/PCILoader.h"
#include "support/ResultCodes.h"

std::int32_t HandleDocumentAboutToCloseNotifier(AINotifierMessage* message) {
    return WithNotifyDataLogged("HandleDocumentAboutToCloseNotifier", message, [&] {
        if (!PluginCoreIsEnabled()) {
            return kNoErr;
        }
        // Only the current document can be scanned.
        const AIDocumentHandle document = CurrentDocument();
        if (document != nullptr && document == message->notifyData) {
            SetFontUsageForDocumentHandle(document, CurrentDocumentFontUsage());
        }
        return kNoErr;
    });
}
