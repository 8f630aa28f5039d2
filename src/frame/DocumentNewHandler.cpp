#include "dialogs/WindowUtilities.h"
#include "frame/NotifierHandlers.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/ResultCodes.h"

std::int32_t HandleDocumentNewNotifier(AINotifierMessage* message) {
    return WithNotifyDataLogged("HandleDocumentNewNotifier", message, [] {
        if (PluginCoreIsEnabled()) {
            ReplyBuffer<kNewDocumentReplySize> reply;
            PCILoader::GetSharedInstance()->pfHandleCreateNewDocument(reply.Data(), reply.Size());
        }
        CrossPluginUtils::BackgroundForegroundApp();
        return kNoErr;
    });
}
