// The reports about all runs: JUnit, the summary, and how JSON is broken into lines.
#include <gtest/gtest.h>

#include "simhost/launch/Patterns.h"
#include "simhost/report/FittedJson.h"
#include "simhost/report/JUnit.h"
#include "simhost/report/Summary.h"

namespace {

using simhost::AsJUnit;
using simhost::AsShellWord;
using simhost::AsXmlText;
using simhost::FailedStep;
using simhost::FirstFailedStep;
using simhost::FittedJson;
using simhost::MatchesPattern;
using simhost::RunOutcome;
using simhost::SummaryOf;
using Json = nlohmann::ordered_json;
using Lines = std::vector<std::string>;

RunOutcome Passed() { return {"a/one.json", "x", "one.json/x", "T", true, true, {}, 0.5}; }
RunOutcome Failed() {
    return {"a/one.json", "y", "one.json/y", "T", true, false, {"calls: <B>"}, 0.25, FailedStep{3, 14, "save \"A\""}};
}
RunOutcome NotPlayed() { return {"two words.json", "", "two words.json", "", false, false, {"no JSON"}}; }

TEST(JUnit, ASuiteForEachFileAndATestCaseForEachCase) {
    EXPECT_EQ(AsJUnit({Passed(), Failed(), NotPlayed()}),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<testsuites tests="3" failures="1" errors="1" time="0.750">
  <testsuite name="a/one.json" tests="2" failures="1" errors="0" time="0.750">
    <testcase classname="one" name="x" time="0.500"/>
    <testcase classname="one" name="y" time="0.250">
      <failure message="calls: &lt;B&gt;">step 3: save &quot;A&quot;&#10;calls: &lt;B&gt;&#10;</failure>
    </testcase>
  </testsuite>
  <testsuite name="two words.json" tests="1" failures="0" errors="1" time="0.000">
    <testcase classname="two words" name="two words" time="0.000">
      <error message="no JSON">no JSON&#10;</error>
    </testcase>
  </testsuite>
</testsuites>
)");
}

TEST(JUnit, WhatXmlCannotHoldIsMadeVisible) {
    EXPECT_EQ(AsXmlText("\x01&\"\xFF\xC3\xA4\xEF\xBF\xBF"), "&lt;01&gt;&amp;&quot;\xEF\xBF\xBD\xC3\xA4\xEF\xBF\xBD");
}

TEST(Summary, TellsWhatFailedAndTheCommandThatRepeatsIt) {
    EXPECT_EQ(SummaryOf({Passed()}, "simhost", "", {}), Lines());
    EXPECT_EQ(SummaryOf({Passed(), Failed(), NotPlayed()}, "scripts/simhost", "", {"--plugin", "my plug-in.aip"}),
              (Lines{"2 of 3 runs did not pass:", "  one.json/y: failed in step 3 (line 14): save \"A\"",
                     "    again: scripts/simhost play a/one.json --case y --plugin \"my plug-in.aip\" --until 3",
                     "  two words.json: cannot be played",
                     "    again: scripts/simhost play \"two words.json\" --plugin \"my plug-in.aip\""}));
}

TEST(Summary, WordsAreQuotedForShells) {
    EXPECT_EQ(AsShellWord("C:/a-b_c.json"), "C:/a-b_c.json");
    EXPECT_EQ(AsShellWord("a b"), "\"a b\"");
    EXPECT_EQ(AsShellWord("$a'b"), "'$a'\\''b'");
    EXPECT_EQ(AsShellWord(""), "\"\"");
}

TEST(RunOutcome, TheFirstFailedStepIsTheOneThatFailedOrNeverEnded) {
    const Json first = {{"event", "step_begin"}, {"step", 1}, {"line", 7}, {"do", "open A"}};
    const Json passed = {{"event", "step_end"}, {"step", 1}, {"passed", true}};
    const Json failed = {{"event", "step_end"}, {"step", 1}, {"passed", false}};
    EXPECT_FALSE(FirstFailedStep({first, passed}));
    const auto found = FirstFailedStep({first, failed});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->number, 1U);
    EXPECT_EQ(found->line, 7U);
    EXPECT_EQ(found->say, "open A");
    EXPECT_TRUE(FirstFailedStep({first}));
    EXPECT_FALSE(FirstFailedStep({}));
}

TEST(FittedJson, IsBrokenOnlyWhereItIsTooLong) {
    EXPECT_EQ(FittedJson(Json::parse(R"({"a":[1,2]})"), 20), (Lines{R"({"a":[1,2]})"}));
    EXPECT_EQ(FittedJson(Json::parse(R"({"a":1,"b":2,"long":["text","text"],"c":[]})"), 20),
              (Lines{"{", R"(  "a":1,"b":2,)", R"(  "long":[)", R"(    "text","text")", "  ],", R"(  "c":[])", "}"}));
}

TEST(FittedJson, BrokenLinesAreStillTheSameJson) {
    const Json value = Json::parse(R"([{"id":"fonts","child":[{"id":"a b"},{"id":"c","x":[1,2,3,[]]}]},"text",-1.5])");
    for (const std::size_t width : {1U, 10U, 20U, 40U, 100U}) {
        std::string joined;
        for (const std::string& line : FittedJson(value, width)) {
            joined += line + "\n";
        }
        EXPECT_EQ(Json::parse(joined), value) << joined;
    }
}

TEST(Patterns, StarsAndQuestionMarks) {
    for (const char* const pattern : {"menu-*", "*", "*labels", "m?nu-labels", "*-*", "MENU-LABELS", "m*l*s", "**"}) {
        EXPECT_TRUE(MatchesPattern("menu-labels", pattern)) << pattern;
    }
    for (const char* const pattern : {"menu", "menu-?", "*label", "", "labels*", "m*x*s"}) {
        EXPECT_FALSE(MatchesPattern("menu-labels", pattern)) << pattern;
    }
    EXPECT_TRUE(MatchesPattern("", "*"));
}

}  // namespace
