#include "doubles/common/ForeignException.h"
#include "support/Errors.h"
#include "unit/frame/DocumentFixture.h"

namespace {

class DocumentOpenedTest : public DocumentTest {
  protected:
    DocumentOpenedTest() {
        WriteFileWithTime(1700000000);
        host.currentPath = file;
        SetSuppressionActive(true);
    }
    std::int32_t Open() { return Handle(HandleDocumentOpenedNotifier); }
    void PickBestMatch(int value) {
        ThePluginCore().script["GetSettings"].text = "{\"PickBestMatch\":" + std::to_string(value) + "}";
    }
    std::string Opened() const { return "HandleOpenExistingDocument('" + file + "', 32767 zeros, 32767)"; }
};

TEST_F(DocumentOpenedTest, PathAndTimeAreRecorded) {
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(GetFilePathForDocumentHandle(document), file);
    EXPECT_EQ(GetTimestampForDocumentHandle(document), 1700000000);
}

TEST_F(DocumentOpenedTest, PathIsRecordedBeforeTheTimeAndBothBeforeThePluginCoreIsAsked) {
    ThePluginCore().calls.Show("PluginIsEnabled");
    std::vector<std::string> lines;
    ThePluginCore().script["PluginIsEnabled"].during = [&] { lines = RecordedTexts(); };
    Open();
    const auto path = std::find(lines.begin(), lines.end(), "Exiting SetFilePathForDocumentHandle()");
    const auto time = std::find(lines.begin(), lines.end(), "Exiting SetTimestampForDocumentHandle()");
    ASSERT_NE(time, lines.end());
    EXPECT_LT(path, time);
}

TEST_F(DocumentOpenedTest, SuppressionIsOffBeforeThePluginCoreIsAskedWhetherItIsEnabled) {
    ThePluginCore().calls.Show("PluginIsEnabled");
    bool wasActive = true;
    ThePluginCore().script["PluginIsEnabled"].during = [&] { wasActive = IsSuppressionActive(); };
    Open();
    EXPECT_FALSE(wasActive);
}

TEST_F(DocumentOpenedTest, HostThatFailsToConvertThePathCostsTheMessage) {
    host.calls.Fail("GetFullPath", 5);
    EXPECT_EQ(Notify(&PluginGlobals::documentOpened, "AI Document Opened Notifier", document), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
    EXPECT_TRUE(PluginCoreCalls().empty());
    EXPECT_FALSE(IsSuppressionActive());
}

TEST_F(DocumentOpenedTest, PathThatIsNoTextEndsTheSuppressionThatAnEarlierDocumentArmed) {
    SetSuppressionActive(false);
    Notify(&PluginGlobals::documentOpened, "AI Document Opened Notifier", document);
    ASSERT_TRUE(IsSuppressionActive());
    host.currentPath = "C:/\xED\xA0\x80.ai";
    Notify(&PluginGlobals::documentOpened, "AI Document Opened Notifier", other);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
    EXPECT_FALSE(IsSuppressionActive());
}

TEST_F(DocumentOpenedTest, ExceptionOfAnotherCompilerOutOfTheHostEndsTheSuppressionToo) {
    host.calls.During("GetDocumentFileSpecification", ThrowLikeAnotherCompiler);
    EXPECT_THROW(Open(), ForeignException);
    EXPECT_FALSE(IsSuppressionActive());
}

TEST_F(DocumentOpenedTest, DocumentOfTheNotificationIsTheOneRecorded) {
    Handle(HandleDocumentOpenedNotifier, other);
    EXPECT_EQ(GetFilePathForDocumentHandle(other), file);
    EXPECT_EQ(DocumentRegistrySize(), 1u);
}

TEST_F(DocumentOpenedTest, PathThatTheHostDoesNotTellIsNotRecordedAndStaysEmpty) {
    host.calls.FailAlways("GetDocumentFileSpecification", 5);
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"HandleOpenExistingDocument('', 32767 zeros, 32767)"});
}

TEST_F(DocumentOpenedTest, EmptyReplyArmsTheSuppressionWithoutAskingTheSettings) {
    SetSuppressionActive(false);
    EXPECT_EQ(Open(), 0);
    EXPECT_TRUE(IsSuppressionActive());
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{Opened()});
}

TEST_F(DocumentOpenedTest, OtherResultsThanRestrictedFontsDoNotCount) {
    ThePluginCore().script.Fail("HandleOpenExistingDocument", 0x12000001);
    EXPECT_EQ(Open(), 0);
    EXPECT_TRUE(IsSuppressionActive());
}

TEST_F(DocumentOpenedTest, RestrictedFontsAreShownAndNothingElseHappens) {
    ThePluginCore().script.Fail("HandleOpenExistingDocument", 0x12000000);
    ThePluginCore().script["HandleOpenExistingDocument"].text = "restricted";
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(PluginCoreCalls(),
              (std::vector<std::string>{Opened(), "InvokeRestrictedFontsDialog('" + file + "', 'restricted')"}));
    EXPECT_FALSE(IsSuppressionActive());
}

TEST_F(DocumentOpenedTest, RestrictedFontsWithAnEmptyReplyDoNotArmTheSuppression) {
    ThePluginCore().script.Fail("HandleOpenExistingDocument", 0x12000000);
    EXPECT_EQ(Open(), 0);
    EXPECT_FALSE(IsSuppressionActive());
}

TEST_F(DocumentOpenedTest, FontsToResolveAreShownThenActivatedAndArmTheSuppression) {
    ThePluginCore().script["HandleOpenExistingDocument"].text = "fonts";
    PickBestMatch(0);
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(PluginCoreCalls(), (std::vector<std::string>{Opened(), "GetSettings(8192 zeros, 8192)",
                                                           "InvokeResolveDialog('fonts', 32767)",
                                                           "ActivateChosenFonts('" + file + "', 'fonts', 32767)"}));
    EXPECT_TRUE(IsSuppressionActive());
}

TEST_F(DocumentOpenedTest, ResolveDialogThatIsRefusedBecomesTheResultAndLeavesTheSuppressionOff) {
    ThePluginCore().script["HandleOpenExistingDocument"].text = "fonts";
    ThePluginCore().script.Fail("InvokeResolveDialog", 6);
    EXPECT_EQ(Open(), 6);
    EXPECT_EQ(PluginCoreCalls().back(), "ActivateChosenFonts('" + file + "', 'fonts', 32767)");
    EXPECT_FALSE(IsSuppressionActive());
}

TEST_F(DocumentOpenedTest, SettingsThatCannotBeReadMeanThatAPersonResolves) {
    ThePluginCore().script["HandleOpenExistingDocument"].text = "fonts";
    ThePluginCore().script.Fail("GetSettings", 1);
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(ThePluginCore().calls.Count("InvokeResolveDialog"), 1);
}

TEST_F(DocumentOpenedTest, BestMatchResolvesWithoutADialogAndLeavesTheSuppressionOff) {
    ThePluginCore().script["HandleOpenExistingDocument"].text = "fonts";
    PickBestMatch(1);
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(PluginCoreCalls(), (std::vector<std::string>{Opened(), "GetSettings(8192 zeros, 8192)"}));
    EXPECT_FALSE(IsSuppressionActive());
}

TEST_F(DocumentOpenedTest, TextOfTheResolveDialogIsWhatIsActivated) {
    ThePluginCore().script["HandleOpenExistingDocument"].text = "fonts";
    ThePluginCore().script["InvokeResolveDialog"].text = "picks";
    Open();
    EXPECT_EQ(PluginCoreCalls().back(), "ActivateChosenFonts('" + file + "', 'picks', 32767)");
}

TEST_F(DocumentOpenedTest, ReplyThatFillsTheWholeBufferIsTextToItsLastByte) {
    ThePluginCore().script["HandleOpenExistingDocument"].text = std::string(32767, 'x');
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(PluginCoreCalls()[2], "InvokeResolveDialog('" + std::string(32767, 'x') + "', 32767)");
}

TEST_F(DocumentOpenedTest, DisabledPluginCoreStillGetsPathAndTimeRecordedSuppressionOffAndForegroundToggled) {
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(GetFilePathForDocumentHandle(document), file);
    EXPECT_EQ(GetTimestampForDocumentHandle(document), 1700000000);
    EXPECT_FALSE(IsSuppressionActive());
    EXPECT_TRUE(PluginCoreCalls().empty());
    EXPECT_EQ(sGetForegroundCalls, 2);
}

TEST_F(DocumentOpenedTest, ForegroundIsToggledLast) {
    Open();
    const std::vector<RecordedLine> log = RecordedLog();
    ASSERT_GE(log.size(), 3u);
    EXPECT_EQ(log[log.size() - 3].text, "Entering CrossPluginUtils::BackgroundForegroundApp");
    EXPECT_EQ(log[log.size() - 2].text, "Exiting CrossPluginUtils::BackgroundForegroundApp");
    EXPECT_EQ(log.back(), (RecordedLine{-1, "HandleDocumentOpenedNotifier returning 0"}));
}

TEST_F(DocumentOpenedTest, EnabledQueryPassesTrueAndAFlagThatIsFalse) {
    ThePluginCore().calls.Show("PluginIsEnabled");
    Open();
    EXPECT_EQ(PluginCoreCalls().front(), "PluginIsEnabled(1, 0)");
}

TEST_F(DocumentOpenedTest, EntryShowsTheDocument) {
    Open();
    EXPECT_EQ(
        RecordedLog().front(),
        (RecordedLine{1, "Entering HandleDocumentOpenedNotifier(message->notifyData = " + LowText(document) + ")"}));
}

}  // namespace
