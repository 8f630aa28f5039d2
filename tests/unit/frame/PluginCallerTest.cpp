#include "frame/PluginCaller.h"

#include "doubles/common/ForeignException.h"
#include "menus/MenuItemRegistry.h"
#include "support/Log.h"
#include "support/plugincore/MissingPluginCore.h"
#include "unit/frame/FrameFixture.h"

namespace {

class PluginCallerTest : public StartedTest {
  protected:
    // The lines that HandlePluginCaller itself writes around a message, with `inner` in between.
    std::vector<RecordedLine> Framed(const char* caller, const char* selector, const SPMessageData* message, int result,
                                     const std::vector<std::string>& inner) {
        char address[16];
        std::snprintf(address, sizeof(address), "0x%08x", Low32(message));
        const std::string call = std::string("HandlePluginCaller(caller='") + caller + "', selector='" + selector +
                                 "', message=" + address + ")";
        std::vector<RecordedLine> lines = {{1, "Entering " + call}};
        for (const std::string& line : inner) {
            lines.push_back({0, line});
        }
        lines.push_back({-1, call + " returning " + std::to_string(result)});
        return lines;
    }

    std::vector<RecordedLine> HandledLines(const char* caller, const char* selector, std::int32_t expected) {
        last.d = host.MessageData();
        ClearRecords();
        EXPECT_EQ(HandlePluginCaller(caller, selector, &last.d), expected);
        return RecordedLog();
    }

    // As long as the longest message that is sent this way.
    AIMenuMessage last{};
};

TEST_F(PluginCallerTest, UnknownSelectorOfAMenuMessageIsLogged) {
    EXPECT_EQ(HandledLines("AI Menu", "Nonsense", 0),
              Framed("AI Menu", "Nonsense", &last.d, 0, {"- caller is kCallerAIMenu", "...UNHANDLED SELECTOR"}));
}

TEST_F(PluginCallerTest, UnknownSelectorOfANotifierMessageIsLogged) {
    EXPECT_EQ(HandledLines("AI Notifier", "Nonsense", 0),
              Framed("AI Notifier", "Nonsense", &last.d, 0, {"...UNHANDLED SELECTOR"}));
}

TEST_F(PluginCallerTest, UnknownSelectorOfAFileFormatMessageIsLoggedAndAnswered0) {
    EXPECT_EQ(HandledLines("AI File Format", "Nonsense", 0),
              Framed("AI File Format", "Nonsense", &last.d, 0, {"...UNHANDLED SELECTOR"}));
}

TEST_F(PluginCallerTest, MenuGoLogsCallerAndSelectorFirst) {
    const std::vector<RecordedLine> lines = HandledLines("AI Menu", "AI Go", 0);
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[1], (RecordedLine{0, "- caller is kCallerAIMenu"}));
    EXPECT_EQ(lines[2], (RecordedLine{0, "- selector is kSelectorAIGoMenuItem"}));
    EXPECT_EQ(lines[3], (RecordedLine{1, "Entering GoMenuItem()"}));
    EXPECT_EQ(lines[lines.size() - 2], (RecordedLine{-1, "GoMenuItem() returning 0"}));
}

TEST_F(PluginCallerTest, ChosenMenuItemIsTheOneOfTheMessage) {
    last.menuItem = host.AddItem("Fonts");
    MenuItemID(last.menuItem) = "chosen";
    HandledLines("AI Menu", "AI Go", 0);
    EXPECT_EQ(PluginCoreCalls(),
              (std::vector<std::string>{"GetIDForDocument('', 256 zeros, 256)", "UpdateDocumentFontUsage('', '')",
                                        "HandleMenuSelection('', '', 'chosen')"}));
}

TEST_F(PluginCallerTest, MenuUpdateLogsTheCallerAloneAndAnswers0) {
    last.menuItem = host.AddItem("Fonts");
    const std::vector<RecordedLine> lines = HandledLines("AI Menu", "AI Update", 0);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[1], (RecordedLine{0, "- caller is kCallerAIMenu"}));
    EXPECT_EQ(lines[2], (RecordedLine{1, "Entering updateMenuItem"}));
    EXPECT_EQ(lines[lines.size() - 2], (RecordedLine{-1, "updateMenuItem returning 0"}));
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"GetMenus('', 4096 zeros, 4096)"});
    for (const RecordedLine& line : lines) {
        EXPECT_EQ(line.text.find("selector is"), std::string::npos);
    }
}

TEST_F(PluginCallerTest, UnknownCallerDoesNothingAndSaysSo) {
    const std::vector<RecordedLine> lines = HandledLines("AI Nobody", "AI Go", 0);
    char expected[128];
    std::snprintf(expected, sizeof(expected),
                  "HandlePluginCaller(caller='AI Nobody', selector='AI Go', message=0x%08x) doing nothing.",
                  Low32(&last));
    EXPECT_EQ(lines, Framed("AI Nobody", "AI Go", &last.d, 0, {expected}));
}

class FaultyMenuDescriptionTest : public PluginCallerTest, public testing::WithParamInterface<const char*> {};

TEST_P(FaultyMenuDescriptionTest, CostsTheUpdateAndNotTheHostAndTheNextUpdateIsHandled) {
    AIMenuMessage message{host.MessageData(), host.AddItem("Fonts")};
    MenuItemID(message.menuItem) = "a";
    ThePluginCore().script["GetMenus"].text = GetParam();
    EXPECT_EQ(Send("AI Menu", "AI Update", &message.d), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
    EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('AI Menu Suite', 11)");
    EXPECT_EQ(host.calls.Count("CheckItem"), 0);
    EXPECT_EQ(host.LiveStrings(), 0);

    ClearRecords();
    ThePluginCore().script["GetMenus"].text =
        R"({"id":"a","title":"Fonts","child":null,"enabled":true,"checked":true})";
    EXPECT_EQ(Send("AI Menu", "AI Update", &message.d), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
    EXPECT_THAT(host.calls.Calls(), testing::Contains("CheckItem(" + HandleText(message.menuItem) + ", 1)"));
}

INSTANTIATE_TEST_SUITE_P(Descriptions, FaultyMenuDescriptionTest,
                         testing::Values("{}", R"({"id":"a","title":"Fonts","child":null,"enabled":1,"checked":true})",
                                         R"({"id":"a","title":"Fonts","child":null,"enabled":true,"checked":"true"})",
                                         R"({"id":"a","title":"Fonts","child":null,"enabled":true,"checked":null})",
                                         R"({"id":"a","title":"\ud800","child":null})",
                                         R"([{"id":"\ud800","title":"Fonts","child":null}])"));

class MenuMessageWithoutPluginCoreTest : public PluginCallerTest, public testing::WithParamInterface<const char*> {};

TEST_P(MenuMessageWithoutPluginCoreTest, CostsTheMessageAndNotTheHostAndTheNextMessageIsHandled) {
    AIMenuMessage message{host.MessageData(), host.AddItem("Fonts")};
    {
        const MissingPluginCore missing;
        ClearRecords();
        EXPECT_EQ(Send("AI Menu", GetParam(), &message.d), 0);
        EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
        EXPECT_TRUE(PluginCoreCalls().empty());
        EXPECT_EQ(host.LiveStrings(), 0);
    }
    LoadFakePluginCore();
    ClearRecords();
    EXPECT_EQ(Send("AI Menu", GetParam(), &message.d), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
    EXPECT_FALSE(PluginCoreCalls().empty());
}

INSTANTIATE_TEST_SUITE_P(Selectors, MenuMessageWithoutPluginCoreTest, testing::Values("AI Go", "AI Update"));

TEST_F(PluginCallerTest, RefusedMenuSuiteCostsTheUpdateAndNotTheHost) {
    host.RefuseSuite("AI Menu Suite", 42);
    AIMenuMessage message{host.MessageData(), nullptr};
    EXPECT_EQ(Send("AI Menu", "AI Update", &message.d), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
}

TEST_F(PluginCallerTest, TimerMessagesWriteNoLines) {
    EXPECT_TRUE(HandledLines("AI Timer", "AI Go", 0).empty());
    EXPECT_EQ(PluginCoreCalls(), (std::vector<std::string>{"IdleEvent()", "ProcessPanelMessages(1)"}));
    EXPECT_TRUE(HandledLines("AI Timer", "Nonsense", 0).empty());
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(PluginCallerTest, UnloadIsRefusedWhileTheGlobalsBlockExists) {
    EXPECT_EQ(HandledLines("SP Access", "Unload", 1), Framed("SP Access", "Unload", &last.d, 1, {}));
}

TEST_F(PluginCallerTest, OtherAccessMessagesAreAnswered0) {
    EXPECT_EQ(HandledLines("SP Access", "Reload", 0), Framed("SP Access", "Reload", &last.d, 0, {}));
}

TEST_F(PluginCallerTest, UnloadIsAllowedAfterShutdown) {
    Send("SP Interface", "Shutdown");
    EXPECT_EQ(Send("SP Access", "Unload"), 0);
}

using PluginCallerBeforeStartupTest = FrameTest;

TEST_F(PluginCallerBeforeStartupTest, UnloadIsAllowed) {
    Send("SP Access", "Reload");
    EXPECT_EQ(Send("SP Access", "Unload"), 0);
}

TEST_F(PluginCallerTest, FileFormatCheckIsAnsweredMinus1EvenWhenThePluginCoreHandledTheDocument) {
    AIFileFormatMessage message{};
    message.d = host.MessageData();
    message.file = host.MakePath("C:/Entw\xC3\xBCrfe/a.ai");
    ThePluginCore().script["HandleOpenExistingDocument"].result = 0x12000000;
    ThePluginCore().script["HandleOpenExistingDocument"].text = "fonts";
    EXPECT_EQ(Send("AI File Format", "AI Check", &message.d), -1);
    EXPECT_EQ(PluginCoreCalls(),
              std::vector<std::string>{"HandleOpenExistingDocument('C:/Entw\xC3\xBCrfe/a.ai', 32767 zeros, 32767)"});
}

TEST_F(PluginCallerTest, FileThatIsOpenedReachesThePluginCoreFromTheCheckAndAgainAsADocument) {
    AIFileFormatMessage check{};
    check.d = host.MessageData();
    check.file = host.MakePath("C:/a.pdf");
    EXPECT_EQ(Send("AI File Format", "AI Check", &check.d), -1);
    host.currentPath = "C:/a.pdf";
    EXPECT_EQ(Notify(&PluginGlobals::documentOpened, "AI Document Opened Notifier", document), 0);
    const std::string call = "HandleOpenExistingDocument('C:/a.pdf', 32767 zeros, 32767)";
    EXPECT_EQ(PluginCoreCalls(), (std::vector<std::string>{call, call}));
}

TEST_F(PluginCallerTest, FileFormatCheckIsAnsweredMinus1WhateverGoesWrong) {
    AIFileFormatMessage message{};
    message.d = host.MessageData();
    message.file = host.MakePath("C:/a.ai");
    ThePluginCore().script["HandleOpenExistingDocument"].throws = doubles::Throw::kForeignException;
    EXPECT_EQ(Send("AI File Format", "AI Check", &message.d), -1);
    host.calls.Fail("GetFullPath", 5);
    EXPECT_EQ(Send("AI File Format", "AI Check", &message.d), -1);
    host.calls.During("GetFullPath", ThrowLikeAnotherCompiler);
    EXPECT_EQ(Send("AI File Format", "AI Check", &message.d), -1);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
}

}  // namespace
