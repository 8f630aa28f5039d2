#include "support/Foreground.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <deque>
#include <vector>

#include "doubles/common/ImportPatch.h"

namespace {

HWND Window(std::uintptr_t number) { return reinterpret_cast<HWND>(number); }

const HWND kHost = Window(0x10);
const HWND kDialogOfHost = Window(0x20);
const HWND kOther = Window(0x30);
const HWND kDesktop = Window(0x1);

std::deque<HWND> sForeground;  // the answers to come
std::vector<HWND> sSwitchedTo;

HWND WINAPI NextForeground() {
    const HWND window = sForeground.front();
    sForeground.pop_front();
    return window;
}
HWND WINAPI Parent(HWND window) { return window == kDialogOfHost ? kHost : nullptr; }
HWND WINAPI Desktop() { return kDesktop; }
BOOL WINAPI RefuseSwitch(HWND window) {
    sSwitchedTo.push_back(window);
    return FALSE;
}

class ForegroundTest : public testing::Test {
  protected:
    ForegroundTest() { sSwitchedTo.clear(); }

    static bool Switch(HWND first, HWND second, ForegroundMatch match) {
        sForeground = {first, second};
        const bool switched = SwitchForegroundAwayAndBack(match);
        EXPECT_TRUE(sForeground.empty()) << "the foreground is asked for twice";
        return switched;
    }

    ImportPatch foreground{"GetForegroundWindow", AsReplacement(NextForeground)};
    ImportPatch parent{"GetParent", AsReplacement(Parent)};
    ImportPatch desktop{"GetDesktopWindow", AsReplacement(Desktop)};
    ImportPatch set{"SetForegroundWindow", AsReplacement(RefuseSwitch)};
};

TEST_F(ForegroundTest, GoesToTheDesktopAndBackAlsoWhenWindowsRefuses) {
    for (const auto match : {ForegroundMatch::kSameWindow, ForegroundMatch::kSameWindowOrParent}) {
        sSwitchedTo.clear();
        EXPECT_TRUE(Switch(kHost, kHost, match));
        EXPECT_EQ(sSwitchedTo, (std::vector<HWND>{kDesktop, kHost}));
    }
}

TEST_F(ForegroundTest, NoForegroundWindowIsNoMatch) {
    EXPECT_FALSE(Switch(nullptr, nullptr, ForegroundMatch::kSameWindow));
    EXPECT_FALSE(Switch(nullptr, nullptr, ForegroundMatch::kSameWindowOrParent));
    EXPECT_FALSE(Switch(kHost, nullptr, ForegroundMatch::kSameWindowOrParent));
    EXPECT_TRUE(sSwitchedTo.empty());
}

TEST_F(ForegroundTest, ForegroundThatChangesHandsIsNoMatch) {
    EXPECT_FALSE(Switch(kHost, kOther, ForegroundMatch::kSameWindow));
    EXPECT_FALSE(Switch(kHost, kOther, ForegroundMatch::kSameWindowOrParent));
    EXPECT_TRUE(sSwitchedTo.empty());
}

TEST_F(ForegroundTest, ParentThatWasFirstMatchesWhereAskedFor) {
    EXPECT_FALSE(Switch(kHost, kDialogOfHost, ForegroundMatch::kSameWindow));
    EXPECT_TRUE(sSwitchedTo.empty());
    EXPECT_TRUE(Switch(kHost, kDialogOfHost, ForegroundMatch::kSameWindowOrParent));
    EXPECT_EQ(sSwitchedTo, (std::vector<HWND>{kDesktop, kDialogOfHost}));
}

}  // namespace
