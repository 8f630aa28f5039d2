#include "simhost/contract/Loss.h"

#include <gtest/gtest.h>

namespace simhost::contract {
namespace {

const Suspects kSuspects{"Theirs.dll", "Plugin.aip"};
const EntryCall kUnderWay{"GetMenus", 3};

std::optional<Loss> LossBy(Rule rule, const std::string& module, const std::optional<EntryCall>& underWay) {
    const Violation violations[] = {{Rule::kCalls, 1, "no loss", ""}, {rule, 1, "what was seen", module}};
    return LossOf(violations, underWay, kSuspects);
}

TEST(LossTest, WhoeverEndsTheProcessFromOutsideTheLibraryHasNotDoneIt) {
    const auto loss = LossBy(Rule::kLostVerdict, "", kUnderWay);
    ASSERT_TRUE(loss);
    EXPECT_EQ(loss->why, "lost-verdict: what was seen");
    EXPECT_FALSE(loss->finding);
}

TEST(LossTest, WithinAnEntryItIsTheLibraryUnlessItIsTheHost) {
    const auto loss = LossBy(Rule::kCrash, "ntdll.dll", kUnderWay);
    ASSERT_TRUE(loss && loss->finding);
    EXPECT_EQ(loss->finding->entry, "GetMenus");
    EXPECT_EQ(loss->finding->call, 3);
    EXPECT_FALSE(LossBy(Rule::kCrash, "simhost.exe", kUnderWay)->finding);
    EXPECT_FALSE(LossBy(Rule::kCrash, "Plugin.aip", kUnderWay)->finding);
}

TEST(LossTest, OutsideOfEntriesItIsTheLibraryOnlyByItsOwnCode) {
    EXPECT_TRUE(LossBy(Rule::kCrash, "Theirs.dll", std::nullopt)->finding);
    EXPECT_FALSE(LossBy(Rule::kCrash, "ntdll.dll", std::nullopt)->finding);
}

TEST(LossTest, OtherRulesTellOfNoLoss) { EXPECT_FALSE(LossBy(Rule::kTimeLimit, "Theirs.dll", kUnderWay)); }

}  // namespace
}  // namespace simhost::contract
