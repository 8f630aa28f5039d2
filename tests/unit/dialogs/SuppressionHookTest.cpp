#include "dialogs/SuppressionHook.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "dialogs/SuppressionWords.h"
#include "doubles/common/AllocationFaults.h"
#include "doubles/common/ImportPatch.h"
#include "support/log/RecordingLogSink.h"

namespace {

struct Posted {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    bool operator==(const Posted&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Posted& posted) {
    return stream << posted.window << " " << posted.message << " " << posted.wParam << " " << posted.lParam;
}

std::vector<Posted> sPosted;
HWND sOkButton = nullptr;
std::vector<std::pair<HWND, int>> sItemsAsked;
std::vector<std::tuple<HHOOK, int, WPARAM, LPARAM>> sPassedOn;
std::vector<std::tuple<int, HOOKPROC, HINSTANCE, DWORD>> sSetHooks;
std::vector<HHOOK> sUnhooked;
HHOOK sHookToGive = nullptr;

BOOL WINAPI RecordPost(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    sPosted.push_back({window, message, wParam, lParam});
    return TRUE;
}
HWND WINAPI AnswerDlgItem(HWND dialog, int id) {
    sItemsAsked.emplace_back(dialog, id);
    return sOkButton;
}
LRESULT WINAPI RecordNextHook(HHOOK hook, int code, WPARAM wParam, LPARAM lParam) {
    sPassedOn.emplace_back(hook, code, wParam, lParam);
    return 4711;
}
HHOOK WINAPI RecordSetHook(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    sSetHooks.emplace_back(kind, procedure, module, thread);
    return sHookToGive;
}
BOOL WINAPI RecordUnhook(HHOOK hook) {
    sUnhooked.push_back(hook);
    return TRUE;
}

const auto kDialog = reinterpret_cast<HWND>(0xD1);
const auto kOtherDialog = reinterpret_cast<HWND>(0xD2);
const auto kOkButton = reinterpret_cast<HWND>(0xB1);
const auto kHook = reinterpret_cast<HHOOK>(0x77);
const auto kDialogClass = reinterpret_cast<LPCWSTR>(0x8002);

class SuppressionHookTest : public testing::Test {
  protected:
    SuppressionHookTest() {
        sPosted.clear();
        sItemsAsked.clear();
        sPassedOn.clear();
        sPassedOn.reserve(16);  // recording must not need memory
        sSetHooks.clear();
        sUnhooked.clear();
        sOkButton = kOkButton;
        sHookToGive = kHook;
    }

    static LRESULT Call(HWND window, UINT message, LPARAM lParam, int code = HC_ACTION) {
        CWPSTRUCT record{lParam, 0, message, window};
        return SuppressionHookProc(code, 0, reinterpret_cast<LPARAM>(&record));
    }
    static void Create(HWND window, LPCWSTR title, LPCWSTR windowClass = kDialogClass, UINT message = WM_CREATE) {
        CREATESTRUCTW creation{};
        creation.lpszName = title;
        creation.lpszClass = windowClass;
        Call(window, message, reinterpret_cast<LPARAM>(&creation));
    }
    static void Show(HWND window) { Call(window, WM_SHOWWINDOW, 0); }

    static std::vector<Posted> OkPresses(HWND dialog) { return {{kOkButton, 0xF5, 0, 0}, {dialog, 0x18, 0, 0}}; }
    static std::vector<Posted> EnterPresses(HWND dialog) {
        return {{dialog, 0x100, 0x0D, 0}, {dialog, 0x101, 0x0D, 0}};
    }

    ImportPatch post{"PostMessageW", AsReplacement(RecordPost)};
    ImportPatch item{"GetDlgItem", AsReplacement(AnswerDlgItem)};
    ImportPatch next{"CallNextHookEx", AsReplacement(RecordNextHook)};
    ImportPatch set{"SetWindowsHookExW", AsReplacement(RecordSetHook)};
    ImportPatch unhook{"UnhookWindowsHookEx", AsReplacement(RecordUnhook)};
};

// --- installing -----------------------------------------------------------------------------------------------------

TEST_F(SuppressionHookTest, IsInstalledOnceForTheCallingThreadAlone) {
    InstallSuppressionHook();
    InstallSuppressionHook();
    ASSERT_EQ(sSetHooks.size(), 1u);
    EXPECT_EQ(sSetHooks[0], std::make_tuple(4, static_cast<HOOKPROC>(SuppressionHookProc),
                                            static_cast<HINSTANCE>(nullptr), GetCurrentThreadId()));
}

TEST_F(SuppressionHookTest, IsRemovedOnceAndCanBeInstalledAgain) {
    InstallSuppressionHook();
    RemoveSuppressionHook();
    RemoveSuppressionHook();
    EXPECT_EQ(sUnhooked, std::vector<HHOOK>{kHook});
    InstallSuppressionHook();
    EXPECT_EQ(sSetHooks.size(), 2u);
}

TEST_F(SuppressionHookTest, RefusedHookIsNotRemovedLater) {
    sHookToGive = nullptr;
    InstallSuppressionHook();
    RemoveSuppressionHook();
    EXPECT_TRUE(sUnhooked.empty());
}

TEST_F(SuppressionHookTest, IsInactiveUntilSwitchedOn) {
    EXPECT_FALSE(IsSuppressionActive());
    SetSuppressionActive(true);
    EXPECT_TRUE(IsSuppressionActive());
    SetSuppressionActive(false);
    EXPECT_FALSE(IsSuppressionActive());
}

// --- acting ---------------------------------------------------------------------------------------------------------

class ActiveHookTest : public SuppressionHookTest {
  protected:
    ActiveHookTest() {
        AddDefaultSuppressionWords();
        SetSuppressionActive(true);
    }
};

TEST_F(ActiveHookTest, MatchingDialogIsClickedAndHiddenWhenItIsShown) {
    Create(kDialog, L"Missing Fonts");
    EXPECT_TRUE(sPosted.empty());
    Show(kDialog);
    EXPECT_EQ(sPosted, OkPresses(kDialog));
    EXPECT_EQ(sItemsAsked, (std::vector<std::pair<HWND, int>>{{kDialog, 1}}));
}

TEST_F(ActiveHookTest, DialogWithoutAnOkButtonGetsEnter) {
    sOkButton = nullptr;
    Create(kDialog, L"Missing Fonts");
    Show(kDialog);
    EXPECT_EQ(sPosted, EnterPresses(kDialog));
}

TEST_F(ActiveHookTest, OnlyTheFirstShowMessageCounts) {
    Create(kDialog, L"Fonts");
    Show(kDialog);
    sPosted.clear();
    Show(kDialog);
    EXPECT_TRUE(sPosted.empty());
}

TEST_F(ActiveHookTest, WordsAreTriedInOrderAndLoggedUntilOneIsFound) {
    Create(kDialog, L"police manquante");
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {0, "Does 'police manquante' contain 'Font'?"},
                                 {0, "Does 'police manquante' contain 'font'?"},
                                 {0, "Does 'police manquante' contain 'fuente'?"},
                                 {0, "Does 'police manquante' contain 'police'?"},
                                 {0, "Found 'police' in Window titled 'police manquante'?"},
                             }));
}

TEST_F(ActiveHookTest, EachBuiltInWordMatchesInsideATitle) {
    for (const wchar_t* title :
         {L"Fonts", L"no fonts", L"la fuente falta", L"la police", L"Caratteri", L"Schriftprobleme!",
          L"Die Schriftart suchen", L"\x4E0D\x660E\x306A\x30D5\x30A9\x30F3\x30C8"}) {
        sPosted.clear();
        Create(kDialog, title);
        Show(kDialog);
        EXPECT_EQ(sPosted.size(), 2u) << title;
    }
}

TEST_F(ActiveHookTest, MatchIsCaseSensitive) {
    Create(kDialog, L"FONT");
    Create(kDialog, L"Save changes?");
    Show(kDialog);
    EXPECT_TRUE(sPosted.empty());
}

TEST_F(ActiveHookTest, MatchingWindowOfAnotherClassIsIgnored) {
    Create(kDialog, L"Fonts", reinterpret_cast<LPCWSTR>(0xC001));
    Show(kDialog);
    EXPECT_TRUE(sPosted.empty());
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(ActiveHookTest, DialogWhoseCreationNamesItsClassByAStringIsNotExamined) {
    Create(kDialog, L"Fonts", L"#32770");
    Show(kDialog);
    EXPECT_TRUE(sPosted.empty());
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(ActiveHookTest, DialogWithoutATitleIsIgnored) {
    Create(kDialog, nullptr);
    Show(kDialog);
    EXPECT_TRUE(sPosted.empty());
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(ActiveHookTest, OtherMessagesThanCreationAreIgnored) {
    Create(kDialog, L"Fonts", kDialogClass, WM_NCCREATE);
    Show(kDialog);
    EXPECT_TRUE(sPosted.empty());
}

TEST_F(ActiveHookTest, ShowMessageOfAnotherWindowIsIgnoredAndTheDialogStaysRemembered) {
    Create(kDialog, L"Fonts");
    Show(kOtherDialog);
    EXPECT_TRUE(sPosted.empty());
    Show(kDialog);
    EXPECT_EQ(sPosted, OkPresses(kDialog));
}

TEST_F(ActiveHookTest, WhileOneDialogIsRememberedFurtherOnesAreNotExamined) {
    Create(kDialog, L"Fonts");
    ClearRecordedLog();
    Create(kOtherDialog, L"Fonts too");
    EXPECT_TRUE(RecordedLog().empty());
    Show(kOtherDialog);
    EXPECT_TRUE(sPosted.empty());
    Show(kDialog);
    Create(kOtherDialog, L"Fonts too");
    sPosted.clear();
    Show(kOtherDialog);
    EXPECT_EQ(sPosted, OkPresses(kOtherDialog));
}

TEST_F(ActiveHookTest, InactiveHookDoesNothing) {
    SetSuppressionActive(false);
    Create(kDialog, L"Fonts");
    Show(kDialog);
    EXPECT_TRUE(sPosted.empty());
    EXPECT_TRUE(RecordedLog().empty());
    EXPECT_EQ(sPassedOn.size(), 2u);
}

TEST_F(ActiveHookTest, NegativeCodeIsOnlyPassedOn) {
    CREATESTRUCTW creation{};
    creation.lpszName = L"Fonts";
    creation.lpszClass = kDialogClass;
    EXPECT_EQ(Call(kDialog, WM_CREATE, reinterpret_cast<LPARAM>(&creation), -1), 4711);
    Show(kDialog);
    EXPECT_TRUE(sPosted.empty());
}

TEST_F(ActiveHookTest, EveryMessageIsPassedOnAsItCameAndItsAnswerReturned) {
    InstallSuppressionHook();
    CWPSTRUCT record{5, 6, WM_SIZE, kDialog};
    EXPECT_EQ(SuppressionHookProc(HC_ACTION, 9, reinterpret_cast<LPARAM>(&record)), 4711);
    ASSERT_EQ(sPassedOn.size(), 1u);
    EXPECT_EQ(sPassedOn[0], std::make_tuple(kHook, HC_ACTION, WPARAM{9}, reinterpret_cast<LPARAM>(&record)));
    RemoveSuppressionHook();
}

TEST_F(ActiveHookTest, TitleWithAnUnpairedSurrogateIsStillSearched) {
    Create(kDialog, L"\xD800 Fonts");
    Show(kDialog);
    EXPECT_EQ(sPosted, OkPresses(kDialog));
}

TEST_F(SuppressionHookTest, MemoryThatRunsOutAnywhereCostsTheDialogAndNotTheHost) {
    // Longer than a string without memory of its own.
    AddSuppressionWord("a word that no title of these tests has in it");
    AddSuppressionWord("Missing fonts in a title that is long");
    SetSuppressionActive(true);
    int attempts = 0;
    bool hasRunOut = true;
    for (int nth = 1; hasRunOut; ++nth) {
        sPassedOn.clear();
        sPosted.clear();
        {
            const FailingAllocation memory(nth);
            Create(kDialog, L"Missing fonts in a title that is long");
            hasRunOut = memory.HasHappened();
        }
        EXPECT_EQ(sPassedOn.size(), 1u) << nth;
        Show(kDialog);
        EXPECT_EQ(sPosted, hasRunOut ? std::vector<Posted>{} : OkPresses(kDialog)) << nth;
        ++attempts;
    }
    EXPECT_GT(attempts, 3);
}

TEST_F(SuppressionHookTest, EmptyWordIsContainedInEveryTitle) {
    AddSuppressionWord("");
    SetSuppressionActive(true);
    Create(kDialog, L"Save changes?");
    Show(kDialog);
    EXPECT_EQ(sPosted, OkPresses(kDialog));
}

TEST_F(SuppressionHookTest, WithoutWordsNothingMatches) {
    SetSuppressionActive(true);
    Create(kDialog, L"Fonts");
    Show(kDialog);
    EXPECT_TRUE(sPosted.empty());
}

}  // namespace
