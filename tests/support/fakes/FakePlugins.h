// The other plug-ins of the fake host, as they are found by name and sent messages.
#pragma once

#include <map>
#include <string>

#include "host/SPSuites.h"

struct FakePlugins {
    // By name. A name that is absent is answered with a null plug-in.
    std::map<std::string, SPPluginRef> named;
    // What the plug-in that is sent a message answers.
    SPErr messageResult = 0;
};

const SPPluginsSuite& FakePluginsSuite();
// Setting up is recorded as "SetupMessageData(0x…, zeroed)"; a message sent as
// "SendMessage(0x…, 'caller', 'selector', item 0x…, set up)": every message is taken for a menu message.
const SPInterfaceSuite& FakeInterfaceSuite();
