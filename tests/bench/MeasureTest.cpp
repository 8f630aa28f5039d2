#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "common/Record.h"
#include "common/Run.h"

// The program's own main is GoogleTest's.
namespace {

using bench::Effort;

constexpr Effort kOnce{0, 3, 0};

TEST(SamplingTest, WorksTakeTurnsAndEachRoundBeginsWithAnotherOne) {
    std::string order;
    const bench::Work works[] = {[&] { order += 'a'; }, [&] { order += 'b'; }, [&] { order += 'c'; }};
    const auto samples = SampleInTurns(works, kOnce);
    EXPECT_EQ(
        "abc"
        "abc"
        "bca"
        "cab",
        order);  // the first three find out how long each takes
    ASSERT_EQ(3U, samples.size());
    for (const auto& each : samples) {
        EXPECT_EQ(3U, each.size());
    }
}

TEST(SamplingTest, SampleRepeatsTheWorkAsOftenAsItTakes) {
    std::size_t calls = 0;
    const bench::Work works[] = {[&] { ++calls; }};
    SampleInTurns(works, Effort{1e6, 1, 1e9});
    EXPECT_LT(1000U, calls);
}

TEST(SamplingTest, NoRoundBeginsAfterTheLimitButThree) {
    const bench::Work works[] = {[] {}};
    EXPECT_EQ(3U, SampleInTurns(works, Effort{0, 1000, 0})[0].size());
}

TEST(SamplingTest, WorkThatTakesNoTimeTakesAStepOfTheClock) {
    const bench::Work works[] = {[] {}};
    for (const double nanoseconds : SampleInTurns(works, Effort{0, 1000, 1e9})[0]) {
        ASSERT_LT(0, nanoseconds);
    }
}

TEST(RecordTest, HoldsRatiosToTheBaseAndTheBlocksThatOneTimeTakes) {
    bench::Run run;
    run.Compare("two blocks", "none",
                {{"two",
                  [] {
                      bench::Keep(std::string(100, 'x'));
                      bench::Keep(std::string(200, 'y'));
                  }},
                 {"none", [] {}}});
    const nlohmann::json record = bench::Measure(run.Comparisons(), kOnce);
    ASSERT_EQ(1U, record.size());
    EXPECT_EQ("two blocks", record[0]["name"]);
    EXPECT_EQ("none", record[0]["base"]);
    EXPECT_EQ(3, record[0]["rounds"]);
    EXPECT_EQ("two", record[0]["entries"][0]["name"]);
    EXPECT_EQ(2, record[0]["entries"][0]["heap_calls"]);
    EXPECT_EQ(0, record[0]["entries"][1]["heap_calls"]);
    EXPECT_EQ(1.0, record[0]["entries"][1]["ratio"]);
    EXPECT_EQ(1.0, record[0]["entries"][1]["low"]);
}

TEST(RunTest, BaseThatIsNoEntryIsRefused) {
    bench::Run run;
    EXPECT_THROW(run.Compare("settings", "peer", {{"this plug-in", [] {}}}), std::logic_error);
}

}  // namespace
