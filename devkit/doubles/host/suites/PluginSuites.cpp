// The plug-in manager: "SP Blocks Suite", "SP Plug-ins Suite", "SP Interface Suite". Other plug-ins are names that
// answer every message with a set result.
#include <string_view>

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SuiteCall.h"
#include "host/SPSuites.h"

namespace simhost {

namespace {

constexpr SPErr kNoSuchPlugin = static_cast<SPErr>(FourCharCode("P!Fd"));

SPErr AllocateBlock(std::size_t size, const char* debugName, void** block) {
    const SuiteCall call("SP Blocks Suite", "AllocateBlock", size, debugName);
    return call.Perform([&] {
        if (size == 0 || block == nullptr) {
            return call.BadArgument("no size, or nowhere to put the block");
        }
        *block = Host().objects.AllocateBlock(size, debugName == nullptr ? "" : debugName);
        if (call.FailsAfterWork()) {
            Host().objects.FreeBlock(*block, Host().rules);
        }
        return 0;
    });
}

SPErr FreeBlock(void* block) {
    const SuiteCall call("SP Blocks Suite", "FreeBlock");
    return call.Perform([&] {
        return Host().objects.FreeBlock(block, Host().rules) ? 0 : call.BadArgument("not a block that is to be freed");
    });
}

SPErr GetNamedPlugin(const char* name, SPPluginRef* plugin) {
    const SuiteCall call("SP Plug-ins Suite", "GetNamedPlugin", name);
    return call.Perform([&]() -> SPErr {
        if (name == nullptr || plugin == nullptr) {
            return call.BadArgument("no name, or nowhere to put the plug-in");
        }
        const SPPluginRef found = Host().model.PluginNamed(name);
        if (found == nullptr) {
            return kNoSuchPlugin;
        }
        *plugin = found;
        return 0;
    });
}

// The other plug-in has no globals: nothing of it runs here.
SPMessageData CommonPartFor(SPPluginRef plugin) { return {kSPMessageCheck, plugin, nullptr, BasicSuite()}; }

bool AreEqual(const SPMessageData& one, const SPMessageData& other) {
    return one.SPCheck == other.SPCheck && one.self == other.self && one.globals == other.globals &&
           one.basic == other.basic;
}

SPErr SetupMessageData(SPPluginRef plugin, SPMessageData* data) {
    const SuiteCall call("SP Interface Suite", "SetupMessageData", plugin, [&] {
        return data != nullptr && AreEqual(*data, SPMessageData{}) ? std::string("zeroed") : std::string("not zeroed");
    });
    return call.Perform([&] {
        if (data == nullptr) {
            return call.BadArgument("no message data");
        }
        if (Host().model.otherPlugins.Find(plugin) == nullptr) {
            return call.Stale(Host().model.otherPlugins, plugin, "plug-in");
        }
        *data = CommonPartFor(plugin);
        return 0;
    });
}

const void* ItemOf(const char* caller, const void* message) {
    const bool isMenuMessage = caller != nullptr && message != nullptr && std::string_view(caller) == kCallerAIMenu;
    return isMenuMessage ? static_cast<const AIMenuMessage*>(message)->menuItem : nullptr;
}

bool IsSetUpFor(SPPluginRef plugin, const void* message) {
    return message != nullptr && AreEqual(*static_cast<const SPMessageData*>(message), CommonPartFor(plugin));
}

SPErr SendMessageToPlugin(SPPluginRef plugin, const char* caller, const char* selector, void* message, SPErr* result) {
    const SuiteCall call("SP Interface Suite", "SendMessage", plugin, caller, selector, [&] {
        return "item " + Shown(ItemOf(caller, message)) + (IsSetUpFor(plugin, message) ? ", set up" : ", not set up");
    });
    return call.Perform([&] {
        if (caller == nullptr || selector == nullptr || message == nullptr || result == nullptr) {
            return call.BadArgument("caller, selector, message or target is missing");
        }
        const OtherPlugin* const receiver = Host().model.otherPlugins.Find(plugin);
        if (receiver == nullptr) {
            return call.Stale(Host().model.otherPlugins, plugin, "plug-in");
        }
        Host().model.sentMessages.push_back(
            {receiver->name, caller, selector, ItemOf(caller, message), IsSetUpFor(plugin, message)});
        *result = receiver->result;
        return 0;
    });
}

}  // namespace

void InstallPluginSuites(SuiteStore& suites) {
    auto& blocks = suites.Table<SPBlocksSuite>("SP Blocks Suite");
    blocks.AllocateBlock = &AllocateBlock;
    blocks.FreeBlock = &FreeBlock;
    suites.Table<SPPluginsSuite>("SP Plug-ins Suite").GetNamedPlugin = &GetNamedPlugin;
    auto& interfaces = suites.Table<SPInterfaceSuite>("SP Interface Suite");
    interfaces.SendMessage = &SendMessageToPlugin;
    interfaces.SetupMessageData = &SetupMessageData;
}

}  // namespace simhost
