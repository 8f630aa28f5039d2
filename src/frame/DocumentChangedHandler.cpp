#include "documents/CurrentDocument.h"
#include "documents/DocumentRegistry.h"
#include "documents/FontUsageScan.h"
#include "frame/NotifierHandlers.h"
#include "plugincore/PCILoader.h"
#include "support/ResultCodes.h"

// The notification's data is not used: only the current document can be scanned.
std::int32_t HandleDocumentChangedNotifier(AINotifierMessage* message) {
    return WithNotifyDataLogged("HandleDocumentChangedNotifier", message, [] {
        if (!PluginCoreIsEnabled()) {
            return kNoErr;
        }
        const AIDocumentHandle document = CurrentDocument();
        if (document == nullptr) {
            return kNoErr;
        }
        RefreshRecordedPath(document);
        SetFontUsageForDocumentHandle(document, CurrentDocumentFontUsage());
        return kNoErr;
    });
}
