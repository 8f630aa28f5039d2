#include "simhost/report/ValueDifference.h"

#include <gtest/gtest.h>

#include "simhost/checks/CallAlignment.h"

namespace {

using simhost::LinesOfCallDifference;
using simhost::LinesOfDifference;
using simhost::PluginCoreCall;
using Json = nlohmann::ordered_json;
using Lines = std::vector<std::string>;

TEST(ValueDifference, TheSameHasNoLines) {
    EXPECT_EQ(LinesOfDifference(Json("a"), Json("a")), Lines());
    EXPECT_EQ(LinesOfDifference(Json{{"a", 1}}, Json{{"a", 1}}), Lines());
}

TEST(ValueDifference, ScalarsStandBelowEachOther) {
    EXPECT_EQ(LinesOfDifference(Json(1), Json("1")), (Lines{"expected  1", "came      \"1\""}));
}

TEST(ValueDifference, TextsOfJsonAreComparedMemberByMember) {
    const Json expected = R"({"fonts":[{"name":"A"},{"name":"B"}],"links":[]})";
    const Json came = R"({"fonts":[{"name":"A"},{"name":"C"}],"more":1})";
    EXPECT_EQ(LinesOfDifference(expected, came),
              (Lines{"at fonts[1].name", "  expected  \"B\"", "  came      \"C\"", "at links", "  expected  []",
                     "  came      no such member", "at more", "  expected  no such member", "  came      1"}));
}

TEST(ValueDifference, TextsOfTheSameJsonInOtherBytesAreShownAsTexts) {
    EXPECT_EQ(LinesOfDifference(Json("[1, 2]"), Json("[1,2]")), (Lines{"expected  \"[1, 2]\"", "came      \"[1,2]\""}));
}

TEST(ValueDifference, TheOrderOfMembersIsADifferenceOfBytes) {
    EXPECT_EQ(LinesOfDifference(Json(R"({"a":1,"b":2})"), Json(R"({"b":2,"a":1})")).size(), 2U);
}

TEST(ValueDifference, OfLongTextsTheSurroundingsAreShown) {
    const std::string same(500, 'x');
    const Lines lines = LinesOfDifference(Json(same + "a"), Json(same + "b"));
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(lines[0].starts_with("expected  ...") && lines[0].ends_with("a\"")) << lines[0];
    EXPECT_LT(lines[1].size(), 200U);
    EXPECT_EQ(lines[2], "they differ from character 501 on");
}

TEST(ValueDifference, AfterAFewPlacesTheRestIsCounted) {
    Json expected = Json::array();
    Json came = Json::array();
    for (int i = 0; i < 20; ++i) {
        expected.push_back(i);
        came.push_back(-1);
    }
    const Lines lines = LinesOfDifference(expected, came);
    EXPECT_EQ(lines.size(), 25U);
    EXPECT_EQ(lines.back(), "and at 12 more places");
}

PluginCoreCall Call(const char* entry, Json arguments = Json::object()) { return {entry, std::move(arguments)}; }

TEST(CallAlignment, OneCallTooManyDoesNotMakeTheLaterOnesWrong) {
    const Json expected = {"IdleEvent", {{"HandleMenuSelection", {{"item", "a"}}}}, "TerminatePluginCoreInterface"};
    EXPECT_EQ(LinesOfCallDifference(expected,
                                    {Call("IdleEvent"), Call("IdleEvent"), Call("HandleMenuSelection", {{"item", "a"}}),
                                     Call("TerminatePluginCoreInterface")}),
              (Lines{"call 2: IdleEvent came, but was not expected"}));
    EXPECT_EQ(LinesOfCallDifference(expected, {Call("IdleEvent"), Call("TerminatePluginCoreInterface")}),
              (Lines{"expected HandleMenuSelection, but it did not come"}));
}

TEST(CallAlignment, ACallOfTheSameFunctionIsComparedArgumentByArgument) {
    EXPECT_EQ(
        LinesOfCallDifference({{{"HandleMenuSelection", {{"item", "a"}, {"json", "x"}}}}},
                              {Call("HandleMenuSelection", {{"item", "b"}, {"document", "d"}})}),
        (Lines{"call 1: HandleMenuSelection, item:", "  expected  \"a\"", "  came      \"b\"",
               "call 1: HandleMenuSelection, json:", "  expected  \"x\"", "  came      \"no such argument\"",
               "call 1: HandleMenuSelection, document:", "  expected  \"no such argument\"", "  came      \"d\""}));
}

}  // namespace
