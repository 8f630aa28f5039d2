// What a sweep counts as distinct, what explains what is left, and that no import and no operation is forgotten.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "doubles/host/OperationList.h"
#include "simhost/plugin/LibraryImage.h"
#include "simhost/sweep/FaultVerdict.h"
#include "simhost/sweep/HostFaults.h"
#include "simhost/sweep/ImportTable.h"
#include "simhost/sweep/InstanceVerdict.h"
#include "simhost/sweep/Plan.h"
#include "support/files/TemporaryFolder.h"

namespace {

using namespace simhost::sweep;
using simhost::Rule;

// --- the tables ---

std::set<std::string> ImportsOfPlugin() {
    const simhost::LibraryImage image(TestProgramFolder().parent_path() / "bin" / "QuorvelTypeAgentAI20.aip");
    std::set<std::string> imports;
    for (const simhost::ImportedLibrary& library : image.Imports()) {
        imports.insert(library.functions.begin(), library.functions.end());
    }
    return imports;
}

TEST(SweepTables, HaveEveryImportOfTheShippedFile) {
    const std::set<std::string> imports = ImportsOfPlugin();
    ASSERT_FALSE(imports.empty());
    std::set<std::string> known;
    for (const ImportRow& row : ImportTable()) {
        EXPECT_TRUE(known.insert(row.name).second) << row.name << " is there twice";
        EXPECT_TRUE(row.substitute != nullptr || row.cannotFail != nullptr) << row.name;
    }
    for (const std::string& name : imports) {
        EXPECT_TRUE(known.contains(name)) << name << " can fail, or there is a reason why not: add it to the table";
    }
}

TEST(SweepTables, HostOperationsThatCannotFailAreOperations) {
    const std::vector<std::string> all = simhost::HostOperationNames();
    const auto canFail = [](const std::string& name) { return CanFail(name); };
    EXPECT_TRUE(std::any_of(all.begin(), all.end(), canFail));
    // 18 are excepted.
    EXPECT_EQ(std::count_if(all.begin(), all.end(), canFail), static_cast<std::ptrdiff_t>(all.size()) - 18);
    EXPECT_FALSE(CanFail("Panel/OnEvent"));
    EXPECT_FALSE(CanFail("PluginCore/IdleEvent"));
}

// --- the plan ---

PlannedFault Planned(std::size_t number, const std::string& key, Mode mode = Mode::kOnce) {
    return {{Kind::kHost, mode, number}, "Operation", key};
}

std::vector<std::size_t> NumbersOf(const std::vector<PlannedFault>& faults) {
    std::vector<std::size_t> numbers;
    for (const PlannedFault& planned : faults) {
        numbers.push_back(planned.fault.number);
    }
    return numbers;
}

TEST(SweepPlan, KeepsTheFirstFaultOfEachKeyThatIsNotKnown) {
    std::vector<PlannedFault> faults = {Planned(1, "a"), Planned(2, "b"), Planned(3, "a"), Planned(4, "c")};
    KeepDistinct(faults, {"b"});
    EXPECT_EQ(NumbersOf(faults), (std::vector<std::size_t>{1, 4}));
}

TEST(SweepPlan, KeepsTheFirstFaultOfEachModeAndEachNthAfterIt) {
    std::vector<PlannedFault> faults = {Planned(1, "a"), Planned(2, "b"), Planned(3, "c"),
                                        Planned(1, "d", Mode::kFromHere), Planned(2, "e", Mode::kFromHere)};
    KeepEvery(faults, 2);
    EXPECT_EQ(NumbersOf(faults), (std::vector<std::size_t>{1, 3, 1}));
}

// --- the verdict ---

SweepRun RunWith(Rule rule, const std::string& text, std::int64_t amount = 1) {
    SweepRun run;
    run.violations.push_back({rule, amount, text});
    return run;
}

TEST(SweepVerdict, AFailedReleaseExplainsWhatItWasToRelease) {
    const SweepRun run = RunWith(Rule::kStringLeak, "the string \"a\" not given back");
    EXPECT_TRUE(JudgeFault(run, {}, {{"AI Unicode String Suite/Destroy", 1}}).findings.empty());
    EXPECT_FALSE(JudgeFault(run, {}, {{"AI File Path Suite/DeleteFilePath", 1}}).findings.empty());
    EXPECT_FALSE(JudgeFault(run, {}, {}).findings.empty());
}

TEST(SweepVerdict, AFailedReleaseExplainsNoMoreThanOneThing) {
    const SweepRun run = RunWith(Rule::kBlockLeak, "two blocks", 2);
    EXPECT_FALSE(JudgeFault(run, {}, {{"SP Blocks Suite/FreeBlock", 1}}).findings.empty());
    EXPECT_TRUE(JudgeFault(run, {}, {{"SP Blocks Suite/FreeBlock", 2}}).findings.empty());
}

TEST(SweepVerdict, AFailedReleaseOfOneSuiteDoesNotExplainAnother) {
    const Failures failures = {{"SP Basic Suite/ReleaseSuite/AI Menu Suite", 1}};
    EXPECT_TRUE(JudgeFault(RunWith(Rule::kSuiteLeak, "\"AI Menu Suite\" is still held 1 times"), {}, failures)
                    .findings.empty());
    EXPECT_FALSE(JudgeFault(RunWith(Rule::kSuiteLeak, "\"AI Timer Suite\" is still held 1 times"), {}, failures)
                     .findings.empty());
}

// The suite of strings is the last but one.
TEST(SweepVerdict, ARefusedSuiteExplainsStringsUnlessItIsTheLastOfTheTable) {
    const auto findings = [](const char* suite) {
        return JudgeFault(RunWith(Rule::kStringLeak, "the string \"A\" not given back"), {},
                          {{std::string("SP Basic Suite/AcquireSuite/") + suite, 1}})
            .findings.size();
    };
    EXPECT_EQ(findings("ATE ApplicationPaint Suite"), 0u);
    EXPECT_EQ(findings("AI Unicode String Suite"), 0u);
    EXPECT_EQ(findings("AI Document Suite"), 1u);
    EXPECT_EQ(findings("AI Menu Suite"), 1u);
}

TEST(SweepVerdict, AFailedReleaseExplainsOneKindOfWhatIsLeft) {
    SweepRun run;
    run.leftByGiver = {{"CreateFileW", 1}, {"CreateSemaphoreW", 1}};
    EXPECT_EQ(JudgeFault(run, {}, {{"CloseHandle", 1}}).findings.size(), 1u);
    EXPECT_TRUE(JudgeFault(run, {}, {{"CloseHandle", 2}}).findings.empty());
}

TEST(SweepVerdict, AnAttemptToReachThePanelLeavesItsSearchAndItsLibrary) {
    SweepRun faultless;
    faultless.leftByGiver = {{"FindFirstFileW", 1}, {"LoadLibraryW", 1}};
    SweepRun run;
    run.leftByGiver = {{"FindFirstFileW", 2}, {"LoadLibraryW", 2}};
    EXPECT_TRUE(JudgeFault(run, faultless, {{"GetProcAddress", 1}}).findings.empty());
    EXPECT_EQ(JudgeFault(run, faultless, {{"LoadLibraryW", 1}}).findings.size(), 1u);
    run.leftByGiver = {{"FindFirstFileW", 3}, {"LoadLibraryW", 3}};
    EXPECT_EQ(JudgeFault(run, faultless, {{"GetProcAddress", 1}}).findings.size(), 2u);
}

TEST(SweepVerdict, APluginCoreThatBreaksTheContractAnywayMayDoSoMoreOften) {
    const SweepRun once = RunWith(Rule::kContract, "no zero");
    const SweepRun twice = RunWith(Rule::kContract, "no zero", 2);
    EXPECT_TRUE(JudgeFault(twice, once, {}).findings.empty());
    EXPECT_FALSE(JudgeFault(once, {}, {}).findings.empty());
}

TEST(SweepVerdict, AHookThatCannotBeRemovedBreaksARuleAndIsCountedAsWell) {
    SweepRun run = RunWith(Rule::kHookLeft, "the hook");
    run.leftByGiver = {{"SetWindowsHookExW", 1}};
    EXPECT_TRUE(JudgeFault(run, {}, {{"UnhookWindowsHookEx", 1}}).findings.empty());
}

TEST(SweepVerdict, TwoFailedReleasesOfDifferentKindsExplainTwoBlocks) {
    const SweepRun run = RunWith(Rule::kBlockLeak, "two blocks", 2);
    EXPECT_TRUE(
        JudgeFault(run, {}, {{"SP Blocks Suite/FreeBlock", 1}, {"SP Basic Suite/AcquireSuite/SP Blocks Suite", 1}})
            .findings.empty());
}

TEST(SweepVerdict, SuitesOfTheTableMayBeLeftWhenOneOfThemIsRefused) {
    const std::map<std::string, std::int64_t> refused = {{"SP Basic Suite/AcquireSuite/ATE Font Suite", 1}};
    EXPECT_TRUE(JudgeFault(RunWith(Rule::kSuiteLeak, "\"ATE Glyph Suite\" is still held 1 times"), {}, refused)
                    .findings.empty());
    // One that is held for a moment only.
    EXPECT_FALSE(
        JudgeFault(RunWith(Rule::kSuiteLeak, "\"AI Menu Suite\" is still held 1 times"), {}, refused).findings.empty());
}

TEST(SweepVerdict, WhatIsLeftWithoutAFaultAsWellIsNoFinding) {
    SweepRun run;
    run.leftByGiver = {{"CreateFileW", 1}};
    EXPECT_TRUE(JudgeFault(run, run, {}).findings.empty());
    EXPECT_FALSE(JudgeFault(run, {}, {}).findings.empty());
}

TEST(SweepVerdict, ALibraryThatIsOnlyFoundWithTheFaultIsKeptWithItsLoader) {
    SweepRun run;
    run.leftByGiver = {{"LoadLibraryA", 1}, {"malloc", 3}};
    EXPECT_TRUE(JudgeFault(run, {}, {}).findings.empty());
    SweepRun withoutLibrary;
    withoutLibrary.leftByGiver = {{"malloc", 3}};
    EXPECT_FALSE(JudgeFault(withoutLibrary, {}, {}).findings.empty());
    SweepRun faultless;
    faultless.leftByGiver = {{"LoadLibraryA", 1}};
    EXPECT_FALSE(JudgeFault(run, faultless, {}).findings.empty());
}

TEST(SweepVerdict, WhatAScenarioExpectsIsNotAskedOfARunWithAFault) {
    EXPECT_TRUE(JudgeFault(RunWith(Rule::kCalls, "another call"), {}, {}).findings.empty());
    EXPECT_FALSE(JudgeFault(RunWith(Rule::kStaleReference, "a handle"), {}, {}).findings.empty());
    EXPECT_FALSE(JudgeFault(RunWith(Rule::kHostState, "the error mode"), {}, {}).findings.empty());
}

TEST(SweepVerdict, AStoryThatCannotGoOnIsAFinding) {
    SweepRun run;
    run.brokenOff = "the plug-in's file is not there";
    EXPECT_FALSE(JudgeFault(run, {}, {}).findings.empty());
}

TEST(SweepVerdict, ARefusedMessageIsAFinding) {
    SweepRun run;
    run.shutdownAnswer = 1;
    EXPECT_FALSE(JudgeFault(run, run, {}).findings.empty());
    SweepRun refused;
    refused.refused = {"\"AI Timer\"/\"AI Go\""};
    EXPECT_FALSE(JudgeFault(refused, {}, {}).findings.empty());
    EXPECT_TRUE(JudgeFault(refused, refused, {}).findings.empty());
    SweepRun another;
    another.refused = {"\"AI Menu\"/\"AI Go Menu Item\""};
    EXPECT_FALSE(JudgeFault(refused, another, {}).findings.empty());
}

TEST(SweepVerdict, TheMessageAfterTheLastStepIsAnsweredAsWithoutTheFaultOrWithNothingToTell) {
    SweepRun faultless;
    faultless.aboutAnswer = 5;
    SweepRun run;
    for (const auto& [answer, findings] : {std::pair{5, 0u}, {0, 0u}, {6, 1u}, {1, 1u}}) {
        run.aboutAnswer = answer;
        EXPECT_EQ(JudgeFault(run, faultless, {}).findings.size(), findings) << answer;
    }
}

// --- the next run in one instance ---

std::size_t FindingsOfNext(const SweepRun& again, const TwoRuns& faultless, const Failures& failures = {}) {
    SweepRun faulty;
    faulty.failures = failures;
    return JudgeNextInInstance(again, faultless, faulty).findings.size();
}

TEST(SweepInstance, TheNextRunIsAsTheSecondOrWhatIsDoneOnceAsTheFirst) {
    TwoRuns faultless;
    faultless.first.operations = {{"PluginCore/RegisterPlugPlug", 1}, {"PluginCore/IdleEvent", 2}};
    faultless.second.operations = {{"PluginCore/IdleEvent", 2}};
    EXPECT_EQ(FindingsOfNext(faultless.second, faultless), 0u);
    EXPECT_EQ(FindingsOfNext(faultless.first, faultless), 0u);
    SweepRun never = faultless.first;
    never.operations["PluginCore/IdleEvent"] = 0;
    EXPECT_EQ(FindingsOfNext(never, faultless), 1u);
}

TEST(SweepInstance, AnAnswerARuleAndAnEndMustBeTheSame) {
    SweepRun answered;
    answered.messages = {"\"A\"/\"B\" answered with 1"};
    EXPECT_EQ(FindingsOfNext(answered, {}), 1u);
    EXPECT_EQ(FindingsOfNext(RunWith(Rule::kBadArgument, "of 0x12"), {}), 1u);
    const SweepRun other = RunWith(Rule::kBadArgument, "of 0x34");
    EXPECT_EQ(FindingsOfNext(RunWith(Rule::kBadArgument, "of 0x12"), {other, other}), 0u);
    SweepRun lost;
    lost.isLost = true;
    EXPECT_EQ(FindingsOfNext(lost, {}, {{"GetProcAddress", 1}}), 1u);
}

TEST(SweepInstance, ALastingEffectExplainsWhatItIsListedFor) {
    SweepRun missing;
    missing.operations = {{"PluginCore/IdleEvent", 1}};
    EXPECT_EQ(FindingsOfNext(missing, {}, {{"GetProcAddress", 1}}), 0u);
    EXPECT_EQ(FindingsOfNext(missing, {}, {{"CreateFileW", 1}}), 1u);
    EXPECT_EQ(FindingsOfNext(RunWith(Rule::kBadArgument, "a handle"), {}, {{"GetProcAddress", 1}}), 1u);
}

TEST(SweepInstance, WordsThatCameForAWordFileStay) {
    const SweepRun clicked = RunWith(Rule::kDialog, "the dialog \"Font\" was clicked OK, expected untouched (1)");
    EXPECT_EQ(FindingsOfNext(clicked, {}, {{"_stat64", 1}}), 0u);
    EXPECT_EQ(FindingsOfNext(clicked, {}, {{"_wfopen", 1}}), 1u);
    const SweepRun untouched = RunWith(Rule::kDialog, "the dialog \"Font\" was untouched, expected clicked OK");
    EXPECT_EQ(FindingsOfNext(untouched, {}, {{"_stat64", 1}}), 1u);
}

TEST(SweepInstance, ASuiteThatTheFaultHasLeftHeldIsStillHeld) {
    const SweepRun left = RunWith(Rule::kSuiteLeak, "\"AI Menu Suite\" is still held 1 times");
    EXPECT_TRUE(JudgeNextInInstance(left, {}, left).findings.empty());
    EXPECT_FALSE(JudgeNextInInstance(left, {}, {}).findings.empty());
    const SweepRun twice = RunWith(Rule::kSuiteLeak, "\"AI Menu Suite\" is still held 2 times", 2);
    EXPECT_FALSE(JudgeNextInInstance(twice, {}, left).findings.empty());
}

}  // namespace
