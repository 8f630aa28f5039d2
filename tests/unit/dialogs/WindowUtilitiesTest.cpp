#include "dialogs/WindowUtilities.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "doubles/common/AllocationFaults.h"
#include "doubles/common/ImportPatch.h"
#include "support/Log.h"
#include "support/log/RecordingLogSink.h"

namespace {

// --- foreground -----------------------------------------------------------------------------------------------------

std::vector<HWND> sForegroundAnswers;
std::vector<HWND> sForegroundSet;

HWND WINAPI AnswerForeground() {
    const HWND answer = sForegroundAnswers.front();
    sForegroundAnswers.erase(sForegroundAnswers.begin());
    return answer;
}
BOOL WINAPI RefuseForeground(HWND window) {
    sForegroundSet.push_back(window);
    return FALSE;
}
HWND WINAPI AnswerDesktop() { return reinterpret_cast<HWND>(0xDE); }

const auto kFirst = reinterpret_cast<HWND>(0xF1);
const auto kSecond = reinterpret_cast<HWND>(0xF2);

class ForegroundTest : public testing::Test {
  protected:
    ForegroundTest() { sForegroundSet.clear(); }
    static void Toggle(HWND first, HWND second) {
        sForegroundAnswers = {first, second};
        CrossPluginUtils::BackgroundForegroundApp();
        EXPECT_TRUE(sForegroundAnswers.empty()) << "the foreground window is read twice";
    }
    const std::vector<RecordedLine> untouched = {
        {1, "Entering CrossPluginUtils::BackgroundForegroundApp"},
        {-1, "Exiting CrossPluginUtils::BackgroundForegroundApp"},
    };

    ImportPatch get{"GetForegroundWindow", AsReplacement(AnswerForeground)};
    ImportPatch set{"SetForegroundWindow", AsReplacement(RefuseForeground)};
    ImportPatch desktop{"GetDesktopWindow", AsReplacement(AnswerDesktop)};
};

TEST_F(ForegroundTest, GoesToTheDesktopAndBackWhateverWindowsAnswers) {
    Toggle(kFirst, kFirst);
    EXPECT_EQ(sForegroundSet, (std::vector<HWND>{reinterpret_cast<HWND>(0xDE), kFirst}));
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering CrossPluginUtils::BackgroundForegroundApp"},
                                 {0, "Switched out of foreground window, and back into it."},
                                 {-1, "Exiting CrossPluginUtils::BackgroundForegroundApp"},
                             }));
}

TEST_F(ForegroundTest, StaysWhereItIsWithoutAForegroundWindow) {
    Toggle(nullptr, nullptr);
    EXPECT_TRUE(sForegroundSet.empty());
    EXPECT_EQ(RecordedLog(), untouched);
}

TEST_F(ForegroundTest, StaysWhereItIsWhenItChangesHandsMeanwhile) {
    Toggle(kFirst, kSecond);
    EXPECT_TRUE(sForegroundSet.empty());
    EXPECT_EQ(RecordedLog(), untouched);
}

// --- finding and closing windows, with real ones --------------------------------------------------------------------

std::vector<MSG> TakeMessages(HWND window) {
    std::vector<MSG> messages;
    for (MSG message; PeekMessageW(&message, window, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE) != 0;) {
        messages.push_back(message);
    }
    return messages;
}

class Window {
  public:
    Window(const char* title, HWND parent)
        : mHandle(CreateWindowExA(0, "STATIC", title, parent == nullptr ? WS_OVERLAPPED : WS_CHILD, 0, 0, 10, 10,
                                  parent, nullptr, nullptr, nullptr)) {}
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() { DestroyWindow(mHandle); }
    HWND Get() const { return mHandle; }

  private:
    HWND mHandle;
};

BOOL CALLBACK StopAtTwin(HWND window, LPARAM parameter) {
    char text[64] = {};
    GetWindowTextA(window, text, sizeof(text));
    if (std::string(text) != "quorvel test: twin") {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(parameter) = window;
    return FALSE;
}

TEST(FindWindowTest, FindsATopLevelWindowBySubstring) {
    const Window window("quorvel test: some title", nullptr);
    EXPECT_EQ(FindWindowByText("test: some", nullptr), window.Get());
}

TEST(FindWindowTest, IsCaseSensitive) {
    const Window window("quorvel test: some title", nullptr);
    EXPECT_EQ(FindWindowByText("TEST: SOME", nullptr), nullptr);
}

TEST(FindWindowTest, FindsNothingWithoutAMatch) {
    EXPECT_EQ(FindWindowByText("quorvel test: nowhere", nullptr), nullptr);
    EXPECT_EQ(FindWindowByText("quorvel test: nowhere", "text"), nullptr);
}

TEST(FindWindowTest, WithATextAChildMustHoldItAndTheTopLevelWindowIsTheAnswer) {
    const Window window("quorvel test: parent", nullptr);
    const Window child("some child text", window.Get());
    EXPECT_EQ(FindWindowByText("quorvel test: parent", "child text"), window.Get());
    EXPECT_EQ(FindWindowByText("quorvel test: parent", "Child text"), nullptr);
    EXPECT_EQ(FindWindowByText("quorvel test: parent", "parent"), nullptr);
}

TEST(FindWindowTest, OnlyTheFirstTitleMatchsChildrenAreExamined) {
    const Window one("quorvel test: twin", nullptr);
    const Window two("quorvel test: twin", nullptr);
    HWND first = nullptr;
    EnumWindows(StopAtTwin, reinterpret_cast<LPARAM>(&first));
    EXPECT_EQ(FindWindowByText("quorvel test: twin", nullptr), first);
    const HWND second = first == one.Get() ? two.Get() : one.Get();
    const Window child("child of the second", second);
    EXPECT_EQ(FindWindowByText("quorvel test: twin", "child of the second"), nullptr);
}

TEST(FindWindowTest, LongTitleIsReadWhole) {
    const std::string title = "quorvel test: " + std::string(5000, 'x') + "end";
    const Window window(title.c_str(), nullptr);
    EXPECT_EQ(FindWindowByText("xend", nullptr), window.Get());
}

TEST(ForciblyCloseWindowTest, PressesEnterInTheWindowFound) {
    const Window window("quorvel test: close me", nullptr);
    const Window child("really", window.Get());
    EXPECT_TRUE(ForciblyCloseWindow("close me", "really"));
    const std::vector<MSG> messages = TakeMessages(window.Get());
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].hwnd, window.Get());
    EXPECT_EQ(messages[0].message, 0x100u);
    EXPECT_EQ(messages[0].wParam, 0x0Du);
    EXPECT_EQ(messages[0].lParam, 0);
    EXPECT_EQ(messages[1].message, 0x101u);
    EXPECT_EQ(messages[1].wParam, 0x0Du);
    EXPECT_EQ(messages[1].lParam, 0);
    char line[128];
    std::snprintf(line, sizeof(line), "Forcibly closing HWND 0x%08x (title='close me', text='really')",
                  Low32(window.Get()));
    EXPECT_EQ(RecordedTexts(), std::vector<std::string>{line});
}

TEST(ForciblyCloseWindowTest, TextMayBeNull) {
    const Window window("quorvel test: close me", nullptr);
    EXPECT_TRUE(ForciblyCloseWindow("close me", nullptr));
    EXPECT_EQ(TakeMessages(window.Get()).size(), 2u);
    char line[128];
    std::snprintf(line, sizeof(line), "Forcibly closing HWND 0x%08x (title='close me', text='(null)')",
                  Low32(window.Get()));
    EXPECT_EQ(RecordedTexts(), std::vector<std::string>{line});
}

TEST(FindWindowTest, MemoryThatRunsOutIsTheCallersExceptionAndNeverWindows) {
    const Window window("quorvel test: a title that is too long for a string without memory of its own", nullptr);
    const FailingAllocation memory;
    EXPECT_THROW(FindWindowByText("quorvel test: nowhere", nullptr), std::bad_alloc);
}

TEST(ForciblyCloseWindowTest, WithoutAWindowNothingHappens) {
    EXPECT_FALSE(ForciblyCloseWindow("quorvel test: nowhere", nullptr));
    EXPECT_TRUE(RecordedLog().empty());
}

}  // namespace
