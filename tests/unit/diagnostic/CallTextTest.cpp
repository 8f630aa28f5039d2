#include "diagnostic/CallText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

template <class... Arguments>
std::string Call(const char* name, Arguments... arguments) {
    char memory[4096];
    TextWriter out(memory);
    AppendCall(out, name, arguments...);
    return std::string(out.Text());
}

template <class... Arguments>
std::string Answer(std::int32_t result, Arguments... arguments) {
    char memory[4096];
    TextWriter out(memory);
    AppendAnswer(out, result, arguments...);
    return std::string(out.Text());
}

std::int32_t MenuCallback(const char*, const char*, const char*, std::uint8_t, std::uint8_t, std::uint8_t, const char*,
                          void*) {
    return 0;
}

std::string Address(const void* address) {
    char text[32];
    _snprintf_s(text, sizeof text, _TRUNCATE, "0x%llx", reinterpret_cast<unsigned long long>(address));
    return text;
}

struct Outputs {
    char buffer[256] = "a reply";
    std::uint64_t size = 256;
    std::uint32_t value = 49152;
    std::uint8_t flag = 1;
};

TEST(CallText, CallWithoutArguments) { EXPECT_EQ(Call("IdleEvent"), "-> IdleEvent()"); }

TEST(CallText, ArgumentsAreToldByTheirTypes) {
    Outputs outputs;
    EXPECT_EQ(Call("GetMenus", static_cast<const char*>("C:\\a.ai"), outputs.buffer + 0, &outputs.size),
              R"(-> GetMenus("C:\a.ai", buffer "a reply", size 256))");
    EXPECT_EQ(Call("GetAPIVersion", &outputs.value, std::int32_t{1}), "-> GetAPIVersion(value 49152, 1)");
    EXPECT_EQ(Call("PluginIsEnabled", std::uint8_t{1}, &outputs.flag), "-> PluginIsEnabled(1, flag 1)");
}

TEST(CallText, FunctionsAndOtherPointersAreToldByTheirAddresses) {
    int context = 0;
    PlugPlugState state{};
    EXPECT_EQ(
        Call("CreateMenusFromJSONBuffer", static_cast<const char*>("[]"), &MenuCallback, static_cast<void*>(&context)),
        "-> CreateMenusFromJSONBuffer(\"[]\", callback " + Address(reinterpret_cast<void*>(&MenuCallback)) + ", " +
            Address(&context) + ")");
    EXPECT_EQ(Call("RegisterPlugPlug", &state), "-> RegisterPlugPlug(" + Address(&state) + ")");
}

TEST(CallText, NullPointersAreToldAsNull) {
    EXPECT_EQ(
        Call("X", static_cast<const char*>(nullptr), static_cast<char*>(nullptr), static_cast<std::uint64_t*>(nullptr),
             static_cast<std::uint32_t*>(nullptr), static_cast<std::uint8_t*>(nullptr), static_cast<void*>(nullptr),
             static_cast<PluginCoreMenuCallback>(nullptr)),
        "-> X(null, buffer null, size null, value null, flag null, null, callback null)");
}

TEST(CallText, BufferIsNotReadBeyondWhatEveryBufferHolds) {
    char bytes[202];
    std::fill(std::begin(bytes), std::end(bytes), 'x');
    // Behind the 201st there might be nothing.
    EXPECT_EQ(Call("X", bytes + 0), "-> X(buffer \"" + std::string(200, 'x') + "...\")");
}

TEST(CallText, AnswerTellsTheResultAndWhatMayHaveBeenWritten) {
    Outputs outputs;
    EXPECT_EQ(Answer(0), "0");
    EXPECT_EQ(Answer(-3, static_cast<const char*>("not this"), outputs.buffer + 0, &outputs.size),
              R"(-3, buffer "a reply", size 256)");
    EXPECT_EQ(Answer(0, &outputs.value, std::int32_t{1}), "0, value 49152");
    EXPECT_EQ(Answer(0, std::uint8_t{1}, &outputs.flag), "0, flag 1");
    EXPECT_EQ(Answer(0, static_cast<void*>(&outputs)), "0");
}

TEST(CallText, ResultsThatAreCodesAreToldInHexadecimalToo) {
    EXPECT_EQ(Answer(0xFFFF), "65535");
    EXPECT_EQ(Answer(0x12000000), "301989888 (0x12000000)");
    EXPECT_EQ(Answer(-0xFFFF), "-65535");
    EXPECT_EQ(Answer(-0x10000), "-65536 (0xffff0000)");
}

}  // namespace
