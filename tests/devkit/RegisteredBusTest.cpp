// What the double of the PluginCore records of the messaging state that it is given.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "devkit/LoadedDouble.h"

namespace {

struct State {
    HMODULE module = nullptr;
    std::array<void*, 5> functions{};
};

class RegisteredBus : public testing::Test {
  protected:
    void* Function(const char* name) const { return reinterpret_cast<void*>(GetProcAddress(bus.Module(), name)); }

    State WholeState() const {
        return {bus.Module(),
                {Function("PlugPlugLoadExtension"), Function("PlugPlugUnloadExtension"),
                 Function("PlugPlugAddEventListener"), Function("PlugPlugRemoveEventListener"),
                 Function("PlugPlugDispatchEvent")}};
    }

    // The text of the state as it is recorded, with its quotes.
    std::string Recorded(State* state) const {
        const std::string before = pluginCore.Record();
        pluginCore.Get<std::int32_t (*)(void*)>("RegisterPlugPlug")(state);
        const std::string line = pluginCore.Record().substr(before.size());
        const std::string beginning = R"({"entry":"RegisterPlugPlug","arguments":{"state":)";
        const std::string end = "},\"answer\":0}\n";
        EXPECT_EQ(line.substr(0, beginning.size()), beginning);
        EXPECT_EQ(line.substr(line.size() - end.size()), end);
        return line.substr(beginning.size(), line.size() - beginning.size() - end.size());
    }

    const LoadedDouble bus{L"PlugPlugOwl.dll", L"QUORVEL_PLUGPLUG", "{}"};
    const LoadedDouble pluginCore{L"PluginCoreX64.dll", L"QUORVEL_PLUGINCORE", "{}"};
};

TEST_F(RegisteredBus, WholeStateIsNamedFieldByField) {
    State state = WholeState();
    EXPECT_EQ(Recorded(&state), "\"module, load, unload, add, remove, dispatch\"");
}

TEST_F(RegisteredBus, FieldsThatAreNotSetAreLeftOut) {
    State state = WholeState();
    state.functions[1] = nullptr;
    state.functions[4] = nullptr;
    EXPECT_EQ(Recorded(&state), "\"module, load, add, remove\"");
    State empty;
    EXPECT_EQ(Recorded(&empty), "\"\"");
}

TEST_F(RegisteredBus, FunctionsInEachOthersPlaceAreNoticed) {
    State state = WholeState();
    std::swap(state.functions[2], state.functions[3]);
    EXPECT_EQ(Recorded(&state), "\"module, load, unload, add?, remove?, dispatch\"");
}

TEST_F(RegisteredBus, FunctionsWithoutAModuleAreNoticed) {
    State state = WholeState();
    state.module = nullptr;
    EXPECT_EQ(Recorded(&state), "\"load?, unload?, add?, remove?, dispatch?\"");
}

TEST_F(RegisteredBus, NoStateIsRecordedAsNull) { EXPECT_EQ(Recorded(nullptr), "null"); }

}  // namespace
