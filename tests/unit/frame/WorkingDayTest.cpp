// A day of work, as the host tells the plug-in about it: every message goes through PluginMain, ticks and menu messages
// come in between, and at the end nothing is left.
#include <array>

#include "documents/DocumentRegistry.h"
#include "menus/MenuItemRegistry.h"
#include "support/fakes/FakeClock.h"
#include "support/fakes/FakePlugPlug.h"
#include "support/TemporaryFolder.h"
#include "unit/frame/FileWithTime.h"
#include "unit/frame/FrameFixture.h"

namespace {

using Calls = std::vector<std::string>;

constexpr std::uint32_t kMorning = 1700000000;
constexpr std::size_t kDocuments = 10;

struct Document {
    AIDocumentHandle handle;
    std::string path;  // a bare title until it is saved
    std::string font;
};

std::string Report(const std::string& font, const std::string& linked) {
    return R"({"DocumentFonts":[{"PostScriptName":")" + font + R"("}],"LinkedDocuments":[")" + linked + R"("]})";
}

class WorkingDayTest : public FrameTest {
  protected:
    WorkingDayTest() {
        LoadFakePluginCore();
        ThePluginCore().replies["GetMenus"] =
            R"([{"id":"a","title":"Fonts","enabled":true,"checked":false,"child":null}])";
        ThePluginCore().replies["GetIDForDocument"] = "document";
        ThePluginCore().duringEntry["CreateMenusFromJSONBuffer"] = [] {
            EXPECT_EQ(
                ThePluginCore().menuCallback("a", "Fonts", "Fonts", 0, 1, 0, nullptr, ThePluginCore().menuContext), 0);
        };
        for (std::size_t n = 0; n < kDocuments; ++n) {
            documents[n] = {reinterpret_cast<AIDocumentHandle>(0x00000002D0C00010 + 16 * n),
                            (folder.Path() / ("document" + std::to_string(n) + ".ai")).string(),
                            "Font-" + std::to_string(n)};
        }
    }

    // The host's current document is this one from now on.
    void MakeCurrent(const Document& document) {
        host.currentDocument = document.handle;
        host.currentPath = document.path;
        host.textFrames = {{document.font, document.font}};
        host.placedFiles = {"linked to " + document.font};
    }

    void Notify(AINotifierHandle PluginGlobals::*notifier, const char* type, const Document& about) {
        AINotifierMessage message{host.MessageData(), static_cast<PluginGlobals*>(host.globals)->*notifier, type,
                                  about.handle};
        EXPECT_EQ(Send("AI Notifier", "AI Notify", &message.d), 0);
    }

    void Open(const Document& document) {
        WriteFileWithTime(document.path, kMorning);
        AIFileFormatMessage check{};
        check.d = host.MessageData();
        check.file = host.MakePath(document.path);
        EXPECT_EQ(Send("AI File Format", "AI Check", &check.d), -1);
        MakeCurrent(document);
        Notify(&PluginGlobals::documentOpened, "AI Document Opened Notifier", document);
    }
    void Create(Document& document, const std::string& title) {
        document.path = title;
        MakeCurrent(document);
        Notify(&PluginGlobals::documentNew, "AI Document New Notifier", document);
    }
    // Work that uses another font from now on.
    void Edit(Document& document) {
        document.font += "-Bold";
        MakeCurrent(document);
        Notify(&PluginGlobals::documentChanged, "AI Document Changed Notifier", document);
    }
    void Save(const Document& document) {
        WriteFileWithTime(document.path, kMorning + 60);
        MakeCurrent(document);
        Notify(&PluginGlobals::documentSaved, "AI Command Notifier: After Save", document);
    }
    void Close(const Document& document) {
        MakeCurrent(document);
        Notify(&PluginGlobals::documentAboutToClose, "AI Document About To Close Notifier", document);
        host.currentDocument = nullptr;
        host.textFrames.clear();
        host.placedFiles.clear();
        Notify(&PluginGlobals::documentClosed, "AI Document Closed Notifier", document);
    }

    // What the host sends all the time: a tick, an update of the menu, and a choice.
    void Pause() {
        FakeClock::Advance(4);
        AITimerMessage tick{host.MessageData(), host.timer.handle};
        EXPECT_EQ(Send("AI Timer", "AI Go", &tick.d), 0);
        AIMenuMessage menu{host.MessageData(), item};
        EXPECT_EQ(Send("AI Menu", "AI Update", &menu.d), 0);
        EXPECT_EQ(Send("AI Menu", "AI Go", &menu.d), 0);
    }

    void ExpectNothingOut() const {
        EXPECT_EQ(host.LiveStrings(), 0);
        EXPECT_EQ(host.LivePaths(), 0);
        EXPECT_EQ(host.LiveReferences(), 0);
        EXPECT_EQ(host.LiveHandles(), 0);
    }

    // The calls of one entry, in order.
    static Calls CallsOf(const std::string& entry) {
        Calls calls;
        for (const std::string& call : PluginCoreCalls()) {
            if (call.starts_with(entry + "(")) {
                calls.push_back(call);
            }
        }
        return calls;
    }

    const TemporaryFolder folder;
    const FakeClock clock{kMorning};
    const LoadablePlugPlug plugPlug;
    std::array<Document, kDocuments> documents;
    const AIMenuItemHandle item = reinterpret_cast<AIMenuItemHandle>(0x100005001);
};

TEST_F(WorkingDayTest, EndsWithNothingLeft) {
    ASSERT_EQ(Startup(), 0);
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{0x100005001, "a"}}));
    const std::map<std::string, int> heldAtRest = host.HeldSuites();
    EXPECT_EQ(heldAtRest.size(), 98u);

    // Eight documents are opened, two are new; of those the second one is never saved.
    for (std::size_t n = 0; n < 8; ++n) {
        Open(documents[n]);
        Pause();
    }
    const std::string savedPath = documents[8].path;
    Create(documents[8], "Untitled-1");
    Create(documents[9], "Untitled-2");
    Pause();
    for (Document& document : documents) {
        Edit(document);
        Pause();
    }
    EXPECT_EQ(DocumentRegistrySize(), kDocuments);
    // From the check and again from the opened document.
    EXPECT_EQ(CallsOf("HandleOpenExistingDocument").size(), 2u * 8u);
    EXPECT_EQ(CallsOf("HandleCreateNewDocument").size(), 2u);
    for (const std::size_t n : {1u, 3u, 5u}) {
        Save(documents[n]);
        Pause();
    }
    documents[8].path = savedPath;
    Save(documents[8]);

    ThePluginCore().calls.Clear();
    Calls saved;
    Calls closed;
    for (const std::size_t n : {3u, 7u, 8u, 0u, 4u, 9u, 1u, 6u, 2u, 5u}) {
        Close(documents[n]);
        Pause();
        const bool wasWritten = n == 1 || n == 3 || n == 5;
        const std::string report = Report(documents[n].font, "linked to " + documents[n].font);
        if (wasWritten) {
            saved.push_back("HandleSaveDocument('" + documents[n].path + "', '" + report + "')");
        }
        // Of the new documents the host has told no path that was recorded.
        if (n < 8) {
            closed.push_back("HandleCloseDocument('" + documents[n].path + "', '" + (wasWritten ? report : "") + "')");
        }
        ExpectNothingOut();
        EXPECT_EQ(host.HeldSuites(), heldAtRest);
    }
    EXPECT_EQ(CallsOf("HandleSaveDocument"), saved);
    EXPECT_EQ(CallsOf("HandleCloseDocument"), closed);
    EXPECT_EQ(CallsOf("ActivateChosenFonts"), Calls{});
    EXPECT_EQ(CallsOf("HandleMenuSelection").size(), kDocuments);
    EXPECT_EQ(CallsOf("IdleEvent").size(), kDocuments);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
    EXPECT_EQ(RegisteredMenuItems().size(), 1u);
    EXPECT_EQ(ThePlugPlug().calls.Count("LoadLibraryW"), 1);

    Notify(&PluginGlobals::applicationShutdown, "AI Application Shutdown Notifier", documents[0]);
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 0);
    EXPECT_EQ(Send("SP Access", "Unload"), 0);
    ExpectNothingOut();
    EXPECT_EQ(host.HeldSuites(), (std::map<std::string, int>{}));
    EXPECT_EQ(host.LiveBlocks(), 0);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(host.timer.isActive, 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
    EXPECT_THAT(RecordedTexts(), testing::Not(testing::Contains(testing::StartsWith("ERROR:"))));
}

}  // namespace
