#include "dialogs/DialogSuppression.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "dialogs/SuppressionWords.h"
#include "doubles/common/ImportPatch.h"
#include "support/ForeignExceptionGuard.h"
#include "support/log/RecordingLogSink.h"
#include "support/plugincore/MissingPluginCore.h"
#include "unit/dialogs/WordFile.h"

namespace {

int sInstalled = 0;
int sRemoved = 0;

HHOOK WINAPI CountSetHook(int, HOOKPROC, HINSTANCE, DWORD) {
    ++sInstalled;
    return reinterpret_cast<HHOOK>(0x77);
}
BOOL WINAPI CountUnhook(HHOOK) {
    ++sRemoved;
    return TRUE;
}

class DialogSuppressionTest : public testing::Test {
  protected:
    DialogSuppressionTest() {
        sInstalled = 0;
        sRemoved = 0;
        LoadFakePluginCore();
        ClearRecordedLog();
        ThePluginCore().calls.Clear();
    }
    void Setting(const std::string& value) {
        ThePluginCore().script["GetSettings"].text = "{\"DialogSuppression\":" + value + "}";
    }

    ImportPatch setHook{"SetWindowsHookExW", AsReplacement(CountSetHook)};
    ImportPatch unhook{"UnhookWindowsHookEx", AsReplacement(CountUnhook)};
};

TEST_F(DialogSuppressionTest, EnabledWithoutFileAndSettingsUsesTheBuiltInWordsAndInstallsTheHook) {
    SetupIllustratorDialogSuppression(true);
    EXPECT_EQ(SuppressionWordList().size(), 8u);
    EXPECT_EQ(sInstalled, 1);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering SetupIllustratorDialogSuppression(1)"},
                                 {-1, "Exiting SetupIllustratorDialogSuppression(1)"},
                             }));
    EXPECT_EQ(ThePluginCore().calls.Calls(),
              (std::vector<std::string>{"GetAPIVersion(0, 1)", "GetSettings(8192 zeros, 8192)"}));
}

TEST_F(DialogSuppressionTest, SecondSetupAppendsTheWordsAgainButInstallsNoSecondHook) {
    SetupIllustratorDialogSuppression(true);
    SetupIllustratorDialogSuppression(true);
    EXPECT_EQ(SuppressionWordList().size(), 16u);
    EXPECT_EQ(sInstalled, 1);
}

TEST_F(DialogSuppressionTest, DisabledRunsTheSameDecisionsAndRemovesTheHook) {
    SetupIllustratorDialogSuppression(true);
    ClearRecordedLog();
    SetupIllustratorDialogSuppression(false);
    EXPECT_EQ(SuppressionWordList().size(), 16u);
    EXPECT_EQ(sRemoved, 1);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering SetupIllustratorDialogSuppression(0)"},
                                 {-1, "Exiting SetupIllustratorDialogSuppression(0)"},
                             }));
}

TEST_F(DialogSuppressionTest, Setting1BehavesLike0) {
    Setting("1");
    SetupIllustratorDialogSuppression(true);
    EXPECT_EQ(SuppressionWordList().size(), 8u);
    EXPECT_EQ(sInstalled, 1);
}

TEST_F(DialogSuppressionTest, NegativeSettingBehavesLike0) {
    Setting("-2");
    SetupIllustratorDialogSuppression(true);
    EXPECT_EQ(SuppressionWordList().size(), 8u);
    EXPECT_EQ(sInstalled, 1);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering SetupIllustratorDialogSuppression(1)"},
                                 {-1, "Exiting SetupIllustratorDialogSuppression(1)"},
                             }));
}

TEST_F(DialogSuppressionTest, Setting2DisablesSuppressionAndRemovesTheHook) {
    SetupIllustratorDialogSuppression(true);
    ClearRecordedLog();
    Setting("2");
    SetupIllustratorDialogSuppression(true);
    EXPECT_EQ(SuppressionWordList().size(), 8u);
    EXPECT_EQ(sInstalled, 1);
    EXPECT_EQ(sRemoved, 1);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering SetupIllustratorDialogSuppression(1)"},
                                 {0, "DialogSuppression overridden by preference value 2"},
                                 {-1, "Exiting SetupIllustratorDialogSuppression(0)"},
                             }));
}

TEST_F(DialogSuppressionTest, SettingAbove2DisablesToo) {
    Setting("77");
    SetupIllustratorDialogSuppression(true);
    EXPECT_EQ(sInstalled, 0);
    EXPECT_EQ(CountRecorded("DialogSuppression overridden by preference value 77"), 1);
}

TEST_F(DialogSuppressionTest, FileWithWordsReplacesTheBuiltInOnesAndTheSetting) {
    const WordFile file("Schrift\n");
    Setting("2");
    SetupIllustratorDialogSuppression(true);
    EXPECT_EQ(SuppressionWordList(), std::vector<std::wstring>{L"Schrift"});
    EXPECT_EQ(sInstalled, 1);
    EXPECT_EQ(ThePluginCore().calls.Count("GetSettings"), 0);
    EXPECT_EQ(CountRecorded("Suppressing only dialogs listed in DialogSuppression.tmp"), 1);
}

TEST_F(DialogSuppressionTest, EmptyFileRemovesTheHookEvenAtStartupWhateverTheSettingSays) {
    SetupIllustratorDialogSuppression(true);
    ClearRecordedLog();
    const WordFile file("");
    Setting("0");
    SetupIllustratorDialogSuppression(true);
    EXPECT_EQ(sInstalled, 1);
    EXPECT_EQ(sRemoved, 1);
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{
                  {1, "Entering SetupIllustratorDialogSuppression(1)"},
                  {0, "DialogSuppression completely disabled by existence of empty DialogSuppression.tmp"},
                  {-1, "Exiting SetupIllustratorDialogSuppression(0)"},
              }));
    EXPECT_EQ(ThePluginCore().calls.Count("GetSettings"), 1);
}

TEST_F(DialogSuppressionTest, BestMatchIsOffWhenTheSettingIs0AbsentOrUnreadable) {
    EXPECT_TRUE(PickBestMatchDisabled());
    ThePluginCore().script["GetSettings"].text = R"({"PickBestMatch":0})";
    EXPECT_TRUE(PickBestMatchDisabled());
    ThePluginCore().script["GetSettings"].text = R"({"PickBestMatch":1})";
    EXPECT_FALSE(PickBestMatchDisabled());
    ThePluginCore().script["GetSettings"].result = 3;
    EXPECT_TRUE(PickBestMatchDisabled());
}

TEST_F(DialogSuppressionTest, ExceptionOfThePluginCoreRemovesTheHookAndClosesTheLog) {
    SetupIllustratorDialogSuppression(true);
    ThePluginCore().script["GetSettings"].throws = doubles::Throw::kForeignException;
    ClearRecordedLog();
    EXPECT_THROW(SetupIllustratorDialogSuppression(false), ForeignException);
    EXPECT_EQ(sRemoved, 1);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering SetupIllustratorDialogSuppression(0)"},
                                 {-1, "Exiting SetupIllustratorDialogSuppression(0)"},
                             }));
}

TEST(DialogSuppressionWithoutPluginCoreTest, UsesTheBuiltInWords) {
    sInstalled = 0;
    const ImportPatch setHook("SetWindowsHookExW", AsReplacement(CountSetHook));
    const ImportPatch unhook("UnhookWindowsHookEx", AsReplacement(CountUnhook));
    const MissingPluginCore missing;
    SetupIllustratorDialogSuppression(true);
    EXPECT_EQ(SuppressionWordList().size(), 8u);
    EXPECT_EQ(sInstalled, 1);
    EXPECT_TRUE(PickBestMatchDisabled());
    SetupIllustratorDialogSuppression(false);
}

}  // namespace
