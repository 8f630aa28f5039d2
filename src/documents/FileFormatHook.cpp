#include "documents/FileFormatHook.h"

#include <string>

#include "documents/DocumentFile.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/ResultCodes.h"

std::int32_t AddFileFormat(SPInterfaceMessage* /*message*/) { return kNoErr; }

namespace {

void TellPluginCore(const AIFileFormatMessage& message) {
    std::string path;
    ConvertFilePathToString(message.file, path, false);
    const PCILoader* const pluginCore = path.empty() ? nullptr : PCILoader::GetSharedInstance();
    if (pluginCore != nullptr) {
        ReplyBuffer<kOpenReplySize> reply;
        pluginCore->pfHandleOpenExistingDocument(path.c_str(), reply.Data(), reply.Size());
    }
}

}  // namespace

std::int32_t CheckFileFormat(const AIFileFormatMessage* message) {
    try {
        TellPluginCore(*message);
    } catch (...) {
        // Any other answer than the refusal would make the host read the file through this plug-in.
    }
    return kFormatRefused;
}
