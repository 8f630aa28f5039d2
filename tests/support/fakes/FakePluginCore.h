// A PluginCore for unit tests: the test program itself exports the 24 entries, and is loaded as the library. Every
// entry records its call and answers from what the test has set.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "plugincore/PluginCoreEntries.h"
#include "support/fakes/CallLog.h"

struct FakePluginCore {
    CallLog calls;
    // The enabled flag that PluginIsEnabled fills in.
    bool enabled = true;
    // What an entry writes into its buffer, by the entry's name; an entry that is absent writes nothing.
    std::map<std::string, std::string> replies;
    // The entry that throws an exception of another compiler; empty for none.
    std::string throwingEntry;
    // Called from inside the named entry, before it answers.
    std::map<std::string, std::function<void()>> duringEntry;
    // What CreateMenusFromJSONBuffer was given besides the text: to be called by a test from inside that entry.
    PluginCoreMenuCallback menuCallback = nullptr;
    void* menuContext = nullptr;
    // What GetSocketPort fills in, whatever it answers.
    std::uint32_t socketPort = 0;
    // What RegisterPlugPlug was given last.
    PlugPlugState* plugPlug = nullptr;
    // Where PluginIsEnabled is not recorded: most tests do not care how often it is asked.
    bool recordEnabledQueries = false;
};

// The one that the exported entries use.
FakePluginCore& ThePluginCore();

// Makes the test program the shared PluginCore library, under its own path.
void LoadFakePluginCore();

// The path under which LoadFakePluginCore loads it.
std::string FakePluginCorePath();
