#include <string>

#include "documents/CurrentDocument.h"
#include "documents/DocumentRegistry.h"
#include "documents/FileModificationDate.h"
#include "documents/FontUsageScan.h"
#include "frame/NotifierHandlers.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/ForeignExceptionGuard.h"
#include "support/ResultCodes.h"

namespace {

// A document that was never saved has no file to tell about: its fonts are activated once more under no path.
void ReportUnsavedDocument(const PCILoader& pluginCore) {
    const std::string fontUsage = CurrentDocumentFontUsage();
    if (fontUsage.empty()) {
        return;
    }
    ReplyBuffer<kOpenReplySize> buffer;
    buffer.Assign(fontUsage);
    pluginCore.pfActivateChosenFonts("", buffer.Data(), buffer.Size());
}

// Whether the file was written after it was opened or last recorded.
bool WasRewritten(AIDocumentHandle document, const std::string& path) {
    const std::int64_t recorded = GetTimestampForDocumentHandle(document);
    return recorded < static_cast<std::int64_t>(QuorvelFileUtils::GetFileModificationDate(path.c_str()));
}

void ReportSavedDocument(const PCILoader& pluginCore, AIDocumentHandle document, const std::string& path) {
    std::string fontUsage;
    if (WasRewritten(document, path)) {
        fontUsage = GetFontUsageForDocumentHandle(document);
        pluginCore.pfHandleSaveDocument(path.c_str(), fontUsage.c_str());
    }
    pluginCore.pfHandleCloseDocument(path.c_str(), fontUsage.c_str());
}

// Forgets a document when its close notification ends, also by an exception: a later document may get the same handle.
class ForgetAtEnd {
  public:
    explicit ForgetAtEnd(AIDocumentHandle document) noexcept : mDocument(document) {}
    ForgetAtEnd(const ForgetAtEnd&) = delete;
    ForgetAtEnd& operator=(const ForgetAtEnd&) = delete;
    ~ForgetAtEnd() { ForgetDocumentHandle(mDocument); }

  private:
    AIDocumentHandle mDocument;
};

void ReportClosedDocument(const PCILoader& pluginCore, AIDocumentHandle document) {
    const std::string path = RefreshRecordedPath(document);
    if (path.empty()) {
        ReportUnsavedDocument(pluginCore);
    } else {
        ReportSavedDocument(pluginCore, document, path);
    }
}

}  // namespace

std::int32_t HandleDocumentClosedNotifier(AINotifierMessage* message) {
    return WithNotifyDataLogged("HandleDocumentClosedNotifier", message, [&] {
        const auto document = static_cast<AIDocumentHandle>(message->notifyData);
        const ForgetAtEnd forget(document);
        if (PluginCoreIsEnabled()) {
            CallForeignCode([&] { ReportClosedDocument(*PCILoader::GetSharedInstance(), document); });
        }
        return kNoErr;
    });
}
