#include "documents/FileFormatHook.h"

#include <string>

#include "documents/DocumentFile.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/ResultCodes.h"

std::int32_t AddFileFormat(SPInterfaceMessage* /*message*/) { return kNoErr; }

std::int32_t CheckFileFormat(const AIFileFormatMessage* message) {
    std::string path;
    ConvertFilePathToString(message->file, path, false);
    const PCILoader* const pluginCore = path.empty() ? nullptr : PCILoader::GetSharedInstance();
    if (pluginCore != nullptr) {
        ReplyBuffer<kOpenReplySize> reply;
        pluginCore->pfHandleOpenExistingDocument(path.c_str(), reply.Data(), reply.Size());
    }
    return kFormatRefused;
}
