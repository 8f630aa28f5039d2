// A working day: every message goes through PluginMain, ticks and menu messages come in between, and at the end nothing
// is left.
#include <array>

#include "documents/DocumentRegistry.h"
#include "menus/MenuItemRegistry.h"
#include "support/clock/FakeClock.h"
#include "support/files/TemporaryFolder.h"
#include "support/plugplug/FakePlugPlug.h"
#include "unit/frame/FileWithTime.h"
#include "unit/frame/FrameFixture.h"

namespace {

using Calls = std::vector<std::string>;

constexpr std::uint32_t kMorning = 1700000000;
constexpr std::size_t kDocuments = 10;
constexpr std::size_t kOpened = 8;  // the others are new

struct Document {
    std::string name;  // in the host's model
    std::string path;  // a bare title until it is saved
    std::string font;
    void* handle = nullptr;  // since it was opened
};

std::string Report(const Document& document) {
    return R"({"DocumentFonts":[{"PostScriptName":")" + document.font + R"("}],"LinkedDocuments":["linked to )" +
           document.font + R"("]})";
}

std::string SaveCall(const Document& document) {
    return "HandleSaveDocument('" + document.path + "', '" + Report(document) + "')";
}

class WorkingDayTest : public FrameTest {
  protected:
    WorkingDayTest() {
        LoadFakePluginCore();
        ThePluginCore().script["GetMenus"].text =
            R"([{"id":"a","title":"Fonts","enabled":true,"checked":false,"child":null}])";
        ThePluginCore().script["GetIDForDocument"].text = "document";
        ThePluginCore().script["CreateMenusFromJSONBuffer"].during = [] {
            EXPECT_EQ(
                ThePluginCore().menuCallback("a", "Fonts", "Fonts", 0, 1, 0, nullptr, ThePluginCore().menuContext), 0);
        };
        for (std::size_t n = 0; n < kDocuments; ++n) {
            const std::string name = "document" + std::to_string(n);
            documents[n] = {name, PathOf(name), "Font-" + std::to_string(n)};
        }
    }

    // The host opens it.
    void MakeOpen(Document& document) {
        host.model.documents[document.name].name = document.name;
        host.model.Open(document.name);
        document.handle = host.model.Named(document.name).handle;
    }
    // The host's current document is this one from now on.
    void MakeCurrent(const Document& document) {
        host.model.current = document.name;
        host.model.Named(document.name).path = document.path;
        host.model.Named(document.name).frames = {{document.font, document.font}};
        host.model.Named(document.name).placed = {"linked to " + document.font};
    }

    void Notify(AINotifierHandle PluginGlobals::*notifier, const char* type, const Document& about) {
        AINotifierMessage message{host.MessageData(), static_cast<PluginGlobals*>(host.globals)->*notifier, type,
                                  about.handle};
        EXPECT_EQ(Send("AI Notifier", "AI Notify", &message.d), 0);
    }

    void Open(Document& document) {
        WriteFileWithTime(document.path, kMorning);
        AIFileFormatMessage check{};
        check.d = host.MessageData();
        check.file = host.MakePath(document.path);
        EXPECT_EQ(Send("AI File Format", "AI Check", &check.d), -1);
        MakeOpen(document);
        MakeCurrent(document);
        Notify(&PluginGlobals::documentOpened, "AI Document Opened Notifier", document);
    }
    void Create(Document& document, const std::string& title) {
        document.path = title;
        MakeOpen(document);
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
        Write(document);
        Notify(&PluginGlobals::documentSaved, "AI Command Notifier: After Save", document);
    }
    // From now on the document has this path.
    void SaveAs(Document& document, const std::string& path) {
        document.path = path;
        Write(document);
        Notify(&PluginGlobals::documentSavedAs, "AI Command Notifier: After Save As", document);
    }
    void Close(const Document& document) {
        MakeCurrent(document);
        Notify(&PluginGlobals::documentAboutToClose, "AI Document About To Close Notifier", document);
        host.model.Close(document.name);
        host.LeaveDocument();
        Notify(&PluginGlobals::documentClosed, "AI Document Closed Notifier", document);
    }

    void Write(const Document& document) {
        WriteFileWithTime(document.path, kMorning + 60);
        MakeCurrent(document);
    }
    std::string PathOf(const std::string& name) const { return (folder.Path() / (name + ".ai")).string(); }

    // What the host sends all the time: a tick, an update of the menu, and a choice.
    void Pause() {
        FakeClock::Advance(4);
        AITimerMessage tick{host.MessageData(), host.Timer()};
        EXPECT_EQ(Send("AI Timer", "AI Go", &tick.d), 0);
        AIMenuMessage menu{host.MessageData(), host.Items().front()};
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

    // Eight documents are opened, two are new.
    void OpenOrCreateAll() {
        for (std::size_t n = 0; n < kOpened; ++n) {
            Open(documents[n]);
            Pause();
        }
        Create(documents[8], "Untitled-1");
        Create(documents[9], "Untitled-2");
        Pause();
        // From the check and again from the opened document.
        EXPECT_EQ(CallsOf("HandleOpenExistingDocument").size(), 2 * kOpened);
        EXPECT_EQ(CallsOf("HandleCreateNewDocument").size(), kDocuments - kOpened);
    }
    void EditAll() {
        for (Document& document : documents) {
            Edit(document);
            Pause();
        }
        EXPECT_EQ(DocumentRegistrySize(), kDocuments);
    }
    // Two of those that were opened, and both new ones.
    static bool GetsAnotherPath(std::size_t n) { return n == 2 || n == 6 || n >= kOpened; }
    void SaveAll() {
        Calls reported;
        for (std::size_t n = 0; n < kDocuments; ++n) {
            if (GetsAnotherPath(n)) {
                SaveAs(documents[n], PathOf("renamed" + std::to_string(n)));
            } else {
                Save(documents[n]);
            }
            Pause();
            reported.push_back(SaveCall(documents[n]));
        }
        EXPECT_EQ(CallsOf("HandleSaveDocument"), reported);
        EXPECT_EQ(CountRecorded("...afterSaveNotifier"), 6);
        EXPECT_EQ(CountRecorded("...afterSaveAsNotifier"), 4);
    }
    // What the PluginCore is told when the document is closed. Nothing about a new one: no path of it was recorded.
    void AddCallsOfClosing(std::size_t n, Calls& saved, Calls& closed) const {
        if (n >= kOpened) {
            return;
        }
        std::string report;
        // What got another path has not been written any more where it was opened.
        if (!GetsAnotherPath(n)) {
            saved.push_back(SaveCall(documents[n]));
            report = Report(documents[n]);
        }
        closed.push_back("HandleCloseDocument('" + PathOf("document" + std::to_string(n)) + "', '" + report + "')");
    }
    void CloseAll(const std::map<std::string, int>& heldAtRest) {
        ThePluginCore().calls.Clear();
        Calls saved;
        Calls closed;
        for (const std::size_t n : {3u, 7u, 8u, 0u, 4u, 9u, 1u, 6u, 2u, 5u}) {
            Close(documents[n]);
            Pause();
            AddCallsOfClosing(n, saved, closed);
            ExpectNothingOut();
            EXPECT_EQ(host.HeldSuites(), heldAtRest);
        }
        EXPECT_EQ(CallsOf("HandleSaveDocument"), saved);
        EXPECT_EQ(CallsOf("HandleCloseDocument"), closed);
        EXPECT_EQ(CallsOf("ActivateChosenFonts"), Calls{});
        EXPECT_EQ(CallsOf("HandleMenuSelection").size(), kDocuments);
        EXPECT_EQ(CallsOf("IdleEvent").size(), kDocuments);
        EXPECT_EQ(DocumentRegistrySize(), 0u);
    }

    const TemporaryFolder folder;
    const FakeClock clock{kMorning};
    const LoadablePlugPlug plugPlug;
    std::array<Document, kDocuments> documents;
};

TEST_F(WorkingDayTest, EndsWithNothingLeft) {
    ASSERT_EQ(Startup(), 0);
    ASSERT_EQ(host.Items().size(), 1u);
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{reinterpret_cast<std::uintptr_t>(host.Items().front()), "a"}}));
    const std::map<std::string, int> heldAtRest = host.HeldSuites();
    EXPECT_EQ(heldAtRest.size(), 98u);

    OpenOrCreateAll();
    EditAll();
    SaveAll();
    CloseAll(heldAtRest);
    EXPECT_EQ(RegisteredMenuItems().size(), 1u);
    EXPECT_EQ(ThePlugPlug().calls.Count("LoadLibraryW"), 1);

    Notify(&PluginGlobals::applicationShutdown, "AI Application Shutdown Notifier", documents[0]);
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 0);
    EXPECT_EQ(Send("SP Access", "Unload"), 0);
    ExpectNothingOut();
    EXPECT_EQ(host.HeldSuites(), (std::map<std::string, int>{}));
    EXPECT_EQ(host.LiveBlocks(), 0);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(host.TimerIsActive(), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
    EXPECT_THAT(RecordedTexts(), testing::Not(testing::Contains(testing::StartsWith("ERROR:"))));
}

}  // namespace
