#include <string>

#include "dialogs/DialogSuppression.h"
#include "dialogs/SuppressionHook.h"
#include "dialogs/WindowUtilities.h"
#include "documents/DocumentFile.h"
#include "documents/DocumentRegistry.h"
#include "documents/FileModificationDate.h"
#include "frame/NotifierHandlers.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/ForeignExceptionGuard.h"
#include "support/ResultCodes.h"

namespace {

// Records the path and time of the current document, which is the one just opened; its path, empty when the host does
// not tell it.
std::string RecordOpenedDocument(AIDocumentHandle document) {
    std::string path;
    if (GetDocumentFileSpec(path, false) == kNoErr) {
        SetFilePathForDocumentHandle(document, path);
        SetTimestampForDocumentHandle(document, QuorvelFileUtils::GetFileModificationDate(path.c_str()));
    }
    return path;
}

// Switches the suppression off when the record is made, also when that ends by an exception: an earlier document may
// have armed it, and nobody activates the fonts of this one then.
class SuppressionOffAtEnd {
  public:
    SuppressionOffAtEnd() = default;
    SuppressionOffAtEnd(const SuppressionOffAtEnd&) = delete;
    SuppressionOffAtEnd& operator=(const SuppressionOffAtEnd&) = delete;
    ~SuppressionOffAtEnd() { SetSuppressionActive(false); }
};

std::string BeginWithOpenedDocument(AIDocumentHandle document) {
    const SuppressionOffAtEnd off;
    return CallForeignCode([&] { return RecordOpenedDocument(document); });
}

// Has the PluginCore activate the fonts of the document and arms the suppression of the host's missing-font dialogs
// where the PluginCore has done so. The resolve dialog's result, 0 when it is not shown.
std::int32_t ActivateFonts(const PCILoader& pluginCore, const std::string& path) {
    if (pluginCore.pfHandleOpenExistingDocument.IsNull()) {
        // No font was activated: the host's dialogs must appear.
        return kNoErr;
    }
    ReplyBuffer<kOpenReplySize> reply;
    if (pluginCore.pfHandleOpenExistingDocument(path.c_str(), reply.Data(), reply.Size()) == kRestrictedFonts) {
        pluginCore.pfInvokeRestrictedFontsDialog(path.c_str(), reply.Data());
        return kNoErr;
    }
    if (reply.Text().empty()) {
        SetSuppressionActive(true);
        return kNoErr;
    }
    if (!PickBestMatchDisabled()) {
        return kNoErr;
    }
    const std::int32_t result = pluginCore.pfInvokeResolveDialog(reply.Data(), reply.Size());
    pluginCore.pfActivateChosenFonts(path.c_str(), reply.Data(), reply.Size());
    if (result == kNoErr) {
        SetSuppressionActive(true);
    }
    return result;
}

}  // namespace

std::int32_t HandleDocumentOpenedNotifier(AINotifierMessage* message) {
    return WithNotifyDataLogged("HandleDocumentOpenedNotifier", message, [&] {
        const std::string path = BeginWithOpenedDocument(static_cast<AIDocumentHandle>(message->notifyData));
        std::int32_t result = kNoErr;
        if (PluginCoreIsEnabled()) {
            result = ActivateFonts(*PCILoader::GetSharedInstance(), path);
        }
        CrossPluginUtils::BackgroundForegroundApp();
        return result;
    });
}
