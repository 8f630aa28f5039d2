#include "support/fakes/FakePlugins.h"

#include "doubles/common/OwnMemory.h"
#include "support/fakes/FakeHost.h"

namespace {

SPErr GetNamedPlugin(const char* name, SPPluginRef* plugin) {
    const auto found = sFakeHost->plugins.named.find(name);
    *plugin = found == sFakeHost->plugins.named.end() ? nullptr : found->second;
    return sFakeHost->Record("GetNamedPlugin", Quoted(name));
}

bool IsZeroed(const SPMessageData& data) {
    return data.SPCheck == 0 && data.self == nullptr && data.globals == nullptr && data.basic == nullptr;
}

SPErr SetupMessageData(SPPluginRef plugin, SPMessageData* data) {
    const SPErr answer =
        sFakeHost->Record("SetupMessageData", Address(plugin) + (IsZeroed(*data) ? ", zeroed" : ", not zeroed"));
    if (answer == 0) {
        *data = {kSPMessageCheck, plugin, nullptr, sFakeHost->Basic()};
    }
    return answer;
}

SPErr SendMessage(SPPluginRef plugin, const char* caller, const char* selector, void* message, SPErr* result) {
    const auto* const menuMessage = static_cast<const AIMenuMessage*>(message);
    const bool isSetUp = menuMessage->d.self == plugin && menuMessage->d.SPCheck == kSPMessageCheck;
    const SPErr answer =
        sFakeHost->Record("SendMessage", Address(plugin) + ", " + Quoted(caller) + ", " + Quoted(selector) + ", item " +
                                             Address(menuMessage->menuItem) + (isSetUp ? ", set up" : ", not set up"));
    *result = sFakeHost->plugins.messageResult;
    return answer;
}

SPPluginsSuite FilledPluginsSuite() {
    SPPluginsSuite suite{};
    suite.GetNamedPlugin = kWithOwnMemory<GetNamedPlugin>;
    return suite;
}

SPInterfaceSuite FilledInterfaceSuite() {
    SPInterfaceSuite suite{};
    suite.SetupMessageData = kWithOwnMemory<SetupMessageData>;
    suite.SendMessage = kWithOwnMemory<SendMessage>;
    return suite;
}

}  // namespace

const SPPluginsSuite& FakePluginsSuite() {
    static const SPPluginsSuite suite = FilledPluginsSuite();
    return suite;
}

const SPInterfaceSuite& FakeInterfaceSuite() {
    static const SPInterfaceSuite suite = FilledInterfaceSuite();
    return suite;
}
