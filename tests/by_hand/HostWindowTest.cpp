// The window by itself: what it shows, as Windows holds it, and what becomes of clicks and keys.
#include "simhost/by_hand/HostWindow.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "by_hand/MenuReading.h"
#include "doubles/common/Text.h"
#include "doubles/host/model/MenuModel.h"
#include "simhost/by_hand/Controls.h"

namespace {

using simhost::Utf8;
using simhost::WindowCommand;
using Commands = std::vector<WindowCommand>;
using Texts = std::vector<std::string>;

struct FindText {
    std::wstring text;
    HWND found = nullptr;
};

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

BOOL CALLBACK OnChild(HWND window, LPARAM argument) {
    FindText& search = *reinterpret_cast<FindText*>(argument);
    if (TextOf(window) == search.text) {
        search.found = window;
    }
    return TRUE;
}

class HostWindowTest : public testing::Test {
  protected:
    simhost::WindowEvents Events() {
        return {[this](WindowCommand command) {
                    if (mThrows) {
                        throw std::runtime_error("on purpose");
                    }
                    mCommands.push_back(command);
                },
                [this](const std::string& document) { mSelected.push_back(document); },
                [this](const std::vector<const void*>& items) { mOpened = items; },
                [this](const void* item) { mChosen = item; }, [] {}};
    }

    // A hundred lines, more than the pane can show.
    void FillTrace() {
        for (int i = 0; i < 100; ++i) {
            mWindow.Append("line " + std::to_string(i));
            if (i % 10 == 0) {
                mWindow.ShowTrace();
            }
        }
        mWindow.ShowTrace();
    }

    static HWND Top() { return FindWindowW(simhost::kHostWindowClass, nullptr); }
    static HWND Control(int identifier) { return GetDlgItem(Top(), identifier); }
    static std::string TextOfControl(int identifier) { return Utf8(TextOf(Control(identifier))); }
    static HWND Button(const wchar_t* text) {
        FindText search{text};
        EnumChildWindows(Top(), &OnChild, reinterpret_cast<LPARAM>(&search));
        return search.found;
    }
    static Texts Documents() {
        Texts texts;
        const HWND list = Control(simhost::kDocumentList);
        for (LRESULT i = 0; i < SendMessageW(list, LB_GETCOUNT, 0, 0); ++i) {
            wchar_t text[256] = L"";
            SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
            texts.push_back(Utf8(std::wstring(text)));
        }
        return texts;
    }
    // As a click does it.
    static void Select(int index) {
        const HWND list = Control(simhost::kDocumentList);
        SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
        SendMessageW(Top(), WM_COMMAND, MAKEWPARAM(simhost::kDocumentList, LBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(list));
    }
    // What the selected document can be asked for.
    static std::map<std::string, bool> EnabledButtons() {
        std::map<std::string, bool> enabled;
        for (const wchar_t* const text : {L"&Open", L"&Save", L"Save &As", L"&Close", L"C&hange"}) {
            enabled[Utf8(std::wstring(text))] = IsWindowEnabled(Button(text)) != 0;
        }
        return enabled;
    }
    // Handles all that waits, then ends the window.
    void RunThrough() {
        PostMessageW(Top(), WM_CLOSE, 0, 0);
        mWindow.Run();
    }

    simhost::MenuModel mMenus;
    bool mThrows = false;
    Commands mCommands;
    Texts mSelected;
    std::vector<const void*> mOpened;
    const void* mChosen = nullptr;
    simhost::HostWindow mWindow{mMenus, Events()};
};

TEST_F(HostWindowTest, ShowsWhatThePanelWasToldAndTheFonts) {
    mWindow.ShowPanel("was told 49152 & more");
    mWindow.ShowFonts("Frutiger-Light, Optima-Roman");
    EXPECT_EQ(TextOfControl(simhost::kPanelText), "was told 49152 & more");
    EXPECT_EQ(TextOfControl(simhost::kFonts), "Frutiger-Light, Optima-Roman");
    SetWindowTextW(Control(simhost::kFonts), L"Ärger-Bold");
    EXPECT_EQ(mWindow.Fonts(), "Ärger-Bold");
}

TEST_F(HostWindowTest, ShowsTheDocumentsWithTheCurrentOneSelected) {
    mWindow.ShowDocuments({{"a", "a (open)", true, false}, {"b", "b (current)", true, true}});
    EXPECT_EQ(Documents(), (Texts{"a (open)", "b (current)"}));
    EXPECT_EQ(mWindow.SelectedDocument(), "b");
    Select(0);
    EXPECT_EQ(mSelected, Texts{"a"});
    // Without a current one the choice stays.
    mWindow.ShowDocuments({{"b", "b (closed)", false, false}, {"a", "a (closed)", false, false}});
    EXPECT_EQ(mWindow.SelectedDocument(), "a");
}

TEST_F(HostWindowTest, ButtonsStandForWhatTheSelectedDocumentCanDo) {
    const std::map<std::string, bool> ofNone = {
        {"&Open", false}, {"&Save", false}, {"Save &As", false}, {"&Close", false}, {"C&hange", false}};
    std::map<std::string, bool> ofClosed = ofNone;
    ofClosed["&Open"] = true;
    std::map<std::string, bool> ofCurrent;
    for (const auto& [text, enabled] : ofClosed) {
        ofCurrent[text] = !enabled;
    }
    mWindow.ShowDocuments({});
    EXPECT_EQ(EnabledButtons(), ofNone);
    mWindow.ShowDocuments({{"a", "a", false, false}, {"b", "b", true, true}});
    EXPECT_EQ(EnabledButtons(), ofCurrent);
    Select(0);
    EXPECT_EQ(EnabledButtons(), ofClosed);
}

TEST_F(HostWindowTest, FocusNeverStaysOnAButtonThatIsDisabled) {
    mWindow.ShowDocuments({{"a", "a", true, true}});
    SetFocus(Button(L"&Close"));
    mWindow.ShowDocuments({{"a", "a", false, false}});
    EXPECT_EQ(GetFocus(), Control(simhost::kDocumentList));
}

TEST_F(HostWindowTest, EachButtonIsItsCommand) {
    mWindow.ShowDocuments({{"a", "a", true, true}});
    for (const wchar_t* const text :
         {L"&New", L"&Save", L"Save &As", L"&Close", L"C&hange", L"As&k for the port", L"&Raise \"Missing Fonts\""}) {
        ASSERT_NE(Button(text), nullptr) << Utf8(std::wstring(text));
        SendMessageW(Button(text), BM_CLICK, 0, 0);
    }
    mWindow.ShowDocuments({{"a", "a", false, false}});
    Select(0);
    SendMessageW(Button(L"&Open"), BM_CLICK, 0, 0);
    EXPECT_EQ(mCommands, (Commands{WindowCommand::kNew, WindowCommand::kSave, WindowCommand::kSaveAs,
                                   WindowCommand::kClose, WindowCommand::kChange, WindowCommand::kAskForPort,
                                   WindowCommand::kRaiseDialog, WindowCommand::kOpen}));
}

TEST_F(HostWindowTest, KeysOfAnotherWindowAreItsOwn) {
    const HWND other =
        CreateWindowExW(0, L"EDIT", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    BYTE keys[256] = {};
    keys[VK_CONTROL] = 0x80;
    SetKeyboardState(keys);
    PostMessageW(other, WM_KEYDOWN, 'S', 0);
    PostMessageW(Control(simhost::kDocumentList), WM_KEYDOWN, 'N', 0);
    RunThrough();
    keys[VK_CONTROL] = 0;
    SetKeyboardState(keys);
    DestroyWindow(other);
    EXPECT_EQ(mCommands, Commands{WindowCommand::kNew});
}

TEST_F(HostWindowTest, ErrorOfACommandEndsTheWindowAndComesOut) {
    mThrows = true;
    PostMessageW(Button(L"&New"), BM_CLICK, 0, 0);
    EXPECT_THROW(mWindow.Run(), std::runtime_error);
    EXPECT_EQ(Top(), nullptr);
    // What comes later finds no window.
    mWindow.Append("a line");
    mWindow.ShowDocuments({});
    mWindow.ShowPanel("nothing");
    mWindow.ShowMenus();
    EXPECT_EQ(mWindow.SelectedDocument(), "");
}

TEST_F(HostWindowTest, TraceEndsAtTheLowerEdge) {
    FillTrace();
    const HWND trace = Control(simhost::kTrace);
    RECT area{};
    SendMessageW(trace, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
    // The line that is at a place of the pane.
    const auto lineAt = [&](LONG y) {
        return HIWORD(SendMessageW(trace, EM_CHARFROMPOS, 0, MAKELPARAM(area.left + 2, y)));
    };
    const LRESULT last = SendMessageW(trace, EM_GETLINECOUNT, 0, 0) - 1;
    EXPECT_EQ(last, 100);
    EXPECT_GE(lineAt(area.bottom - 16), last - 2) << "the newest lines are out of sight";
    const LRESULT place =
        SendMessageW(trace, EM_POSFROMCHAR, static_cast<WPARAM>(SendMessageW(trace, EM_LINEINDEX, 99, 0)), 0);
    EXPECT_GT(static_cast<short>(HIWORD(place)), area.bottom - 60) << "below the newest lines the pane is blank";
}

TEST_F(HostWindowTest, TraceIsShownAndPaintedAtTheEndOfAnActOrWhenItTakesLong) {
    mWindow.ShowTrace();
    mWindow.Append("a line");
    EXPECT_EQ(TextOfControl(simhost::kTrace), "");
    mWindow.ShowTrace();
    EXPECT_EQ(TextOfControl(simhost::kTrace), "a line\r\n");
    EXPECT_EQ(GetUpdateRect(Control(simhost::kTrace), nullptr, FALSE), 0);
    Sleep(120);
    mWindow.Append("another");
    EXPECT_EQ(TextOfControl(simhost::kTrace), "a line\r\nanother\r\n");
    mWindow.Append("one more");
    SendMessageW(Top(), WM_TIMER, 1, 0);
    EXPECT_EQ(TextOfControl(simhost::kTrace), "a line\r\nanother\r\none more\r\n");
}

TEST_F(HostWindowTest, TraceStaysWhereSomebodyReads) {
    FillTrace();
    const HWND trace = Control(simhost::kTrace);
    SendMessageW(trace, EM_LINESCROLL, 0, -4);
    const LRESULT first = SendMessageW(trace, EM_GETFIRSTVISIBLELINE, 0, 0);
    mWindow.Append("another");
    mWindow.ShowTrace();
    EXPECT_EQ(SendMessageW(trace, EM_GETFIRSTVISIBLELINE, 0, 0), first);
    SendMessageW(trace, EM_LINESCROLL, 0, 1000);
    mWindow.Append("one more");
    mWindow.ShowTrace();
    EXPECT_GT(SendMessageW(trace, EM_GETFIRSTVISIBLELINE, 0, 0), first + 4);
    EXPECT_TRUE(TextOfControl(simhost::kTrace).starts_with("line 0\r\nline 1\r\n"));
    EXPECT_TRUE(TextOfControl(simhost::kTrace).ends_with("another\r\none more\r\n"));
}

TEST_F(HostWindowTest, MenusAreBuiltAnewWhenNoneIsOpen) {
    mMenus.items.Add({"Type Plugins1", "About", {}, nullptr, 0, true, false});
    SendMessageW(Top(), WM_ENTERMENULOOP, 0, 0);
    mWindow.ShowMenus();
    EXPECT_EQ(by_hand::LinesOf(GetMenu(Top())), Texts{"Type Plugins1 > (disabled)"});
    SendMessageW(Top(), WM_EXITMENULOOP, 0, 0);
    EXPECT_EQ(by_hand::LinesOf(GetMenu(Top())), (Texts{"Type Plugins1 >", "  About"}));
}

TEST_F(HostWindowTest, OpeningAMenuIsToldAndRefreshesIt) {
    void* const item = mMenus.items.Add({"Type Plugins1", "About", {}, nullptr, 0, true, false});
    mWindow.ShowMenus();
    const HMENU menu = GetSubMenu(GetMenu(Top()), 0);
    mMenus.items.Find(item)->checked = true;
    SendMessageW(Top(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), 0);
    EXPECT_EQ(mOpened, std::vector<const void*>{item});
    EXPECT_EQ(by_hand::LinesOf(menu), Texts{"About (checked)"});
    SendMessageW(Top(), WM_COMMAND, by_hand::CommandOf(menu, {"About"}), 0);
    EXPECT_EQ(mChosen, item);
}

}  // namespace
