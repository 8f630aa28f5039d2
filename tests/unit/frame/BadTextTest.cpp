// Texts of the host that cannot be converted: names of files that are no UTF-16, names of fonts that are no UTF-8. They
// cost the message, and nothing else.
#include <algorithm>

#include "documents/DocumentRegistry.h"
#include "unit/frame/WorkingDayFixture.h"

namespace {

// Of the host's UTF-16: the file system allows it.
constexpr const char* kUnpairedSurrogate = "C:/\xED\xA0\x80.ai";

struct BadText {
    const char* name;
    void (*putIn)(TestHost& host);
    // The messages that it costs; the others do not look at it.
    Names costs;
};

const Names kScans = {"menu choice", "changed", "save", "about to close"};

const BadText kBadTexts[] = {
    {"DocumentPath",
     [](TestHost& host) { host.currentPath = kUnpairedSurrogate; },
     {"open restricted", "open", "menu update", "menu choice", "save", "about"}},
    {"DocumentPathThatEndsInTheMiddle",
     [](TestHost& host) { host.currentPath = "C:/\xED\xA0\xBD"; },
     {"open restricted", "open", "menu update", "menu choice", "save", "about"}},
    {"PlacedPath",
     [](TestHost& host) {
         host.placedFiles = {"C:/logo.pdf", kUnpairedSurrogate};
     },
     kScans},
    {"FontName", [](TestHost& host) { host.textFrames = {{"Optima\xE3"}}; }, kScans},
    {"FontNameOfSurrogate", [](TestHost& host) { host.textFrames = {{"\xED\xA0\x80"}}; }, kScans},
};

class BadTextTest : public WorkingDayTest, public testing::WithParamInterface<BadText> {
  protected:
    BadTextTest() { LoadFakePluginCore(); }
};

bool Holds(const Names& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

TEST_P(BadTextTest, CostsTheMessageThatMeetsItAndNothingElse) {
    // Start-up asks for the path of the current document, too: it has its own test below.
    EXPECT_EQ(Perform("start-up"), 0);
    GetParam().putIn(host);
    for (auto message = kMessages.begin() + 1; message != kMessages.end(); ++message) {
        SCOPED_TRACE(*message);
        ClearRecords();
        EXPECT_EQ(Perform(*message), 0);
        EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), Holds(GetParam().costs, *message) ? 1 : 0);
    }
    EXPECT_TRUE(host.HeldSuites().empty());
    EXPECT_EQ(host.LiveBlocks(), 0);
}

TEST_P(BadTextTest, IsForgottenByTheNextMessage) {
    EXPECT_EQ(Perform("start-up"), 0);
    const std::string path = host.currentPath;
    GetParam().putIn(host);
    EXPECT_EQ(Perform("save"), 0);
    host.currentPath = path;
    host.placedFiles = {};
    host.textFrames = {{"Optima-Roman"}};
    ClearRecords();
    EXPECT_EQ(Perform("save"), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
    EXPECT_EQ(NamesOf(PluginCoreCalls()), kCallsOfADay.at("save"));
}

// A document that was opened before it had a path: its path is asked for again.
class BareTitleTest : public WorkingDayTest, public testing::WithParamInterface<const char*> {
  protected:
    BareTitleTest() {
        LoadFakePluginCore();
        host.currentPath = "Untitled-1";
        Perform("start-up");
        Perform("open");
    }
};

TEST_P(BareTitleTest, PathThatIsNoTextCostsTheMessageThatAsksForIt) {
    host.currentPath = kUnpairedSurrogate;
    ClearRecords();
    EXPECT_EQ(Perform(GetParam()), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
    EXPECT_EQ(NamesOf(PluginCoreCalls()), Names{"PluginIsEnabled"});

    host.currentPath = "C:/a.ai";
    ClearRecords();
    EXPECT_EQ(Perform("open"), 0);
    EXPECT_EQ(Perform("close"), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
    EXPECT_EQ(NamesOf(PluginCoreCalls()).back(), "HandleCloseDocument");
}

TEST_F(BareTitleTest, DocumentIsForgottenAlthoughItsCloseMessageIsLost) {
    host.currentPath = kUnpairedSurrogate;
    EXPECT_EQ(Perform("close"), 0);
    EXPECT_EQ(DocumentRegistrySize(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Messages, BareTitleTest, testing::Values("changed", "close"));

// The menus are described for the current document. Without them the host is not asked for notifications either.
TEST_F(WorkingDayTest, PathThatIsNoUtf16EndsStartUpAndShutDownGivesEverythingBack) {
    LoadFakePluginCore();
    host.currentPath = kUnpairedSurrogate;
    EXPECT_EQ(Perform("start-up"), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
    EXPECT_EQ(NamesOf(PluginCoreCalls()), (Names{"GetAPIVersion", "InitializePluginCoreInterface"}));
    host.currentPath = "C:/a.ai";
    EXPECT_EQ(Perform("about"), 0);
    EXPECT_EQ(Perform("shut-down"), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
    EXPECT_TRUE(host.HeldSuites().empty());
    EXPECT_EQ(host.LiveBlocks(), 0);
}

INSTANTIATE_TEST_SUITE_P(Texts, BadTextTest, testing::ValuesIn(kBadTexts),
                         [](const auto& text) { return std::string(text.param.name); });

}  // namespace
