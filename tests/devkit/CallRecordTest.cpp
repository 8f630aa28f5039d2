// The two forms of a recorded call.
#include "doubles/common/CallRecord.h"

#include <gtest/gtest.h>

namespace {

using doubles::CallRecord;

TEST(CallRecord, TextsNumbersAndNullsStandInTheirOrder) {
    std::uint32_t number = 4294967295u;
    CallRecord call("Entry");
    call.Text("a", "x'y").Number("b", -1).Text("c", nullptr).NumberAt("d", &number);
    call.NumberAt("e", static_cast<const std::uint8_t*>(nullptr)).SetAnswer(7);
    EXPECT_EQ(call.AsText(), "Entry('x'y', -1, null, 4294967295, null)");
    EXPECT_EQ(call.AsJson(),
              R"({"entry":"Entry","arguments":{"a":"x'y","b":-1,"c":null,"d":4294967295,"e":null},"answer":7})");
}

TEST(CallRecord, BytesAreKeptInBothForms) {
    CallRecord call("Entry");
    call.Text("umlaut", "\xC3\xA4").Text("control", "a\n").Text("broken", "\xE4");
    EXPECT_EQ(call.AsText(), "Entry('\xC3\xA4', 'a\n', '\xE4')");
    EXPECT_EQ(
        call.AsJson(),
        "{\"entry\":\"Entry\",\"arguments\":{\"umlaut\":\"\xC3\xA4\",\"control_hex\":\"610A\",\"control\":\"a\\n\","
        "\"broken_hex\":\"E4\",\"broken\":\"\xEF\xBF\xBD\"},\"answer\":0}");
}

TEST(CallRecord, BufferIsToldByCapacityAndContent) {
    const char zeros[4] = {};
    const char used[4] = {'a', 'b', 0, 'c'};
    std::uint64_t size = 4;
    const auto text = [&](const char* buffer, const std::uint64_t* given) {
        return CallRecord("E").Buffer(buffer, given).AsText();
    };
    EXPECT_EQ(text(zeros, &size), "E(4 zeros, 4)");
    EXPECT_EQ(text(used, &size), "E('ab', 4)");
    EXPECT_EQ(text(nullptr, &size), "E(null, 4)");
    EXPECT_EQ(CallRecord("E").BufferOf(zeros, 4).AsText(), "E(4 zeros)");
    EXPECT_EQ(CallRecord("E").Buffer(used, &size).AsJson(),
              R"({"entry":"E","arguments":{"capacity":4,"zeroed":false},"answer":0})");
    EXPECT_EQ(CallRecord("E").Buffer(nullptr, &size).AsJson(),
              R"({"entry":"E","arguments":{"capacity":4,"zeroed":null},"answer":0})");
    EXPECT_EQ(CallRecord("E").Buffer(zeros, nullptr).AsJson(),
              R"({"entry":"E","arguments":{"capacity":null},"answer":0})");
}

TEST(CallRecord, OfPointersTheTextShowsOnlyTheNullOnes) {
    int target = 0;
    const CallRecord call =
        CallRecord("E").Pointer("given", &target).Pointer("missing", nullptr).Texts("items", {"a -> 0"});
    EXPECT_EQ(call.AsText(), "E(null)");
    EXPECT_EQ(call.AsJson(),
              R"({"entry":"E","arguments":{"given":"set","missing":"null","items":["a -> 0"]},"answer":0})");
}

}  // namespace
