#include <string>

#include "documents/DocumentFile.h"
#include "documents/FontUsageScan.h"
#include "frame/base/PluginGlobals.h"
#include "frame/NotifierHandlers.h"
#include "host/DocumentSuite.h"
#include "host/HeldSuites.h"
#include "plugincore/PCILoader.h"
#include "support/ResultCodes.h"

namespace {

// The notification also comes for a save that the user cancelled: only an unmodified document has really been saved. A
// refused query counts as modified.
bool SaveHasHappened() {
    AIBoolean modified = 1;
    return sDocumentSuite->GetDocumentModified(&modified) == kNoErr && modified == 0;
}

std::int32_t ReportSavedDocument(const AINotifierMessage& message) {
    const std::string fontUsage = CurrentDocumentFontUsage();
    const bool isSave = sGlobals != nullptr && message.notifier == sGlobals->documentSaved;
    LogMessage(kLogNote, isSave ? "...afterSaveNotifier" : "...afterSaveAsNotifier");
    if (!SaveHasHappened()) {
        return kNoErr;
    }
    std::string path;
    const std::int32_t result = GetDocumentFileSpec(path, false);
    if (result == kNoErr && !path.empty()) {
        PCILoader::GetSharedInstance()->pfHandleSaveDocument(path.c_str(), fontUsage.c_str());
    }
    return result;
}

}  // namespace

std::int32_t HandleDocumentSavedNotifier(AINotifierMessage* message) {
    return WithNotifyDataLogged("HandleDocumentSavedNotifier", message,
                                [&] { return PluginCoreIsEnabled() ? ReportSavedDocument(*message) : kNoErr; });
}
