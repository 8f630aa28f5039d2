// The plug-in manager: "SP Blocks Suite", "SP Plug-ins Suite", "SP Interface Suite". There are no other plug-ins, so
// nobody can be found and sent a message.
#include "host/SPSuites.h"
#include "simulated_host/suites/AllSuites.h"
#include "simulated_host/suites/SuiteCall.h"

namespace simhost {

namespace {

constexpr SPErr kNoSuchPlugin = static_cast<SPErr>(FourCharCode("P!Fd"));

SPErr AllocateBlock(std::size_t size, const char* debugName, void** block) {
    const SuiteCall call("SP Blocks Suite", "AllocateBlock");
    if (call.code != 0) {
        return call.code;
    }
    if (size == 0 || block == nullptr) {
        return call.BadArgument("no size, or nowhere to put the block");
    }
    *block = Host().objects.AllocateBlock(size, debugName == nullptr ? "" : debugName);
    return 0;
}

SPErr FreeBlock(void* block) {
    const SuiteCall call("SP Blocks Suite", "FreeBlock");
    if (call.code != 0) {
        return call.code;
    }
    return Host().objects.FreeBlock(block, Host().rules) ? 0 : call.BadArgument("not a block that is to be freed");
}

SPErr GetNamedPlugin(const char* name, SPPluginRef* plugin) {
    const SuiteCall call("SP Plug-ins Suite", "GetNamedPlugin");
    if (call.code != 0) {
        return call.code;
    }
    if (name == nullptr || plugin == nullptr) {
        return call.BadArgument("no name, or nowhere to put the plug-in");
    }
    return kNoSuchPlugin;
}

}  // namespace

void InstallPluginSuites(SuiteStore& suites) {
    auto& blocks = suites.Table<SPBlocksSuite>("SP Blocks Suite");
    blocks.AllocateBlock = &AllocateBlock;
    blocks.FreeBlock = &FreeBlock;
    suites.Table<SPPluginsSuite>("SP Plug-ins Suite").GetNamedPlugin = &GetNamedPlugin;
}

}  // namespace simhost
