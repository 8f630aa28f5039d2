#include <gtest/gtest.h>

#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "diagnostic/DiagnosticLog.h"
#include "doubles/common/ForeignException.h"
#include "doubles/common/ImportPatch.h"
#include "LogFolderGuard.h"
#include "plugincore/EntryInterposition.h"
#include "plugincore/EntryPoint.h"
#include "plugincore/PluginCore.h"
#include "support/log/RecordingLogSink.h"
#include "support/plugincore/EntryNames.h"
#include "support/TextConversion.h"

// The name that the build gives it here.
FARPROC InterposeLoggedEntry(HMODULE library, const char* name, FARPROC address) noexcept;

namespace {

template <class Function>
FARPROC Address(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

std::int32_t Answer(const char* /*path*/, char* buffer, std::uint64_t* size) {
    EXPECT_EQ(RecordedTexts().size(), 1u) << "the line before the call is missing";
    *size = 5;
    std::copy_n("reply", 6, buffer);
    SetLastError(4711);
    return 0x12000000;
}
std::int32_t Idle() { return 0; }
std::int32_t sChanging = 0;
std::int32_t Changing() { return sChanging; }
std::int32_t Slow() {
    Sleep(300);
    return 0;
}
std::int32_t ThrowForeign() {
    ThrowLikeAnotherCompiler();
    return 0;
}
std::int32_t ThrowOwn() { throw std::runtime_error("own"); }
std::int32_t LogFromWithin() {
    TheDiagnosticLog().Line(0, "from within", {1, 0});
    return 0;
}
// A PluginCore that lets the host in, which makes a tick; and what the file holds thereafter.
std::int32_t (*sTick)() = nullptr;
const LogFolderGuard* sFolder = nullptr;
std::string sLinesAfterTick;
std::int32_t TickWithin(std::uint8_t /*process*/) {
    sTick();
    sLinesAfterTick = sFolder->Lines();
    return 0;
}
std::int32_t CountCalls(std::uint8_t process) { return process + 41; }

// The recorded lines with their levels, without durations and without the line about the library.
std::vector<std::string> Lines() {
    std::vector<std::string> lines;
    for (const RecordedLine& line : RecordedLog()) {
        if (!line.text.starts_with("PluginCore: ")) {
            lines.push_back(std::to_string(line.level) + " " +
                            std::regex_replace(line.text, std::regex(R"(\d+\.\d\d\d ms)"), "D ms"));
        }
    }
    return lines;
}

class LoggedEntriesTest : public testing::Test {
  protected:
    LoggedEntriesTest() {
        // The line about the library comes once.
        InterposeLoggedEntry(GetModuleHandleW(nullptr), "IdleEvent", Address(Idle));
        ClearRecordedLog();
    }
    ~LoggedEntriesTest() override {
        for (const std::string& name : kEntryNames) {
            InterposeLoggedEntry(GetModuleHandleW(nullptr), name.c_str(), nullptr);
        }
    }

    template <class Signature, class Function>
    static EntryPoint<Signature> Bound(const char* name, Function* function) {
        EntryPoint<Signature> entry;
        entry.Bind(InterposeLoggedEntry(GetModuleHandleW(nullptr), name, Address(function)));
        return entry;
    }

    LogFolderGuard folder;
};

TEST_F(LoggedEntriesTest, CallIsLoggedBeforeAndAfterWithTheReply) {
    const auto entry = Bound<decltype(GetMenus)>("GetMenus", Answer);
    char buffer[256] = {};
    std::uint64_t size = 256;
    EXPECT_EQ(entry("C:\\a.ai", buffer, &size), 0x12000000);
    EXPECT_EQ(GetLastError(), 4711u);
    EXPECT_STREQ(buffer, "reply");
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(Lines(), (std::vector<std::string>{
                           R"(1 -> GetMenus("C:\a.ai", buffer "", size 256))",
                           R"(-1 <- GetMenus took D ms, answered 301989888 (0x12000000), buffer "reply", size 5)"}));
}

TEST_F(LoggedEntriesTest, DurationIsMeasured) {
    Bound<decltype(IdleEvent)>("IdleEvent", Slow)();
    const std::string line = RecordedTexts().at(1);
    std::smatch duration;
    ASSERT_TRUE(std::regex_search(line, duration, std::regex(R"(took (\d+)\.\d\d\d ms)"))) << line;
    EXPECT_GE(std::stoi(duration[1]), 290);
    EXPECT_LT(std::stoi(duration[1]), 5000);
}

TEST_F(LoggedEntriesTest, EveryEntryIsReplacedAndAMissingOneStaysMissing) {
    for (const std::string& name : kEntryNames) {
        const FARPROC replaced = InterposeLoggedEntry(GetModuleHandleW(nullptr), name.c_str(), Address(Idle));
        EXPECT_NE(replaced, nullptr) << name;
        EXPECT_NE(replaced, Address(Idle)) << name;
        EXPECT_EQ(InterposeLoggedEntry(GetModuleHandleW(nullptr), name.c_str(), nullptr), nullptr) << name;
    }
    EXPECT_EQ(InterposeLoggedEntry(GetModuleHandleW(nullptr), "NoEntry", Address(Idle)), Address(Idle));
}

TEST_F(LoggedEntriesTest, EachEntryCallsItsOwnFunction) {
    const auto process = Bound<decltype(ProcessPanelMessages)>("ProcessPanelMessages", CountCalls);
    const auto idle = Bound<decltype(IdleEvent)>("IdleEvent", Idle);
    EXPECT_EQ(process(1), 42);
    EXPECT_EQ(idle(), 0);
    EXPECT_EQ(Lines(), (std::vector<std::string>{"1 -> ProcessPanelMessages(1)",
                                                 "-1 <- ProcessPanelMessages took D ms, answered 42",
                                                 "1 -> IdleEvent()", "-1 <- IdleEvent took D ms, answered 0"}));
}

TEST_F(LoggedEntriesTest, EntryThatIsBoundAnewCallsTheNewFunction) {
    const auto entry = Bound<decltype(IdleEvent)>("IdleEvent", Idle);
    Bound<decltype(IdleEvent)>("IdleEvent", Changing);
    sChanging = 7;
    EXPECT_EQ(entry(), 7);
}

TEST_F(LoggedEntriesTest, ExceptionOfVisualCppIsToldAndGoesOnAsBefore) {
    const auto entry = Bound<decltype(IdleEvent)>("IdleEvent", ThrowForeign);
    EXPECT_THROW(entry(), ForeignException);
    EXPECT_EQ(Lines(),
              (std::vector<std::string>{"1 -> IdleEvent()",
                                        "-1 <- IdleEvent took D ms, threw an exception of Visual C++ (0xE06D7363)"}));
}

TEST_F(LoggedEntriesTest, ExceptionOfTheOwnCompilerIsToldAndGoesOnAsBefore) {
    const auto entry = Bound<decltype(IdleEvent)>("IdleEvent", ThrowOwn);
    std::string what;
    try {
        entry();
    } catch (const std::runtime_error& error) {
        what = error.what();
    }
    EXPECT_EQ(what, "own");
    EXPECT_EQ(Lines(),
              (std::vector<std::string>{
                  "1 -> IdleEvent()", "-1 <- IdleEvent took D ms, threw an exception of the plug-in's own compiler"}));
}

TEST_F(LoggedEntriesTest, RepeatedCallsAreLoggedOnceAndCountedInTheFile) {
    TheDiagnosticLog().Line(0, "a note", {1, 0});
    const auto entry = Bound<decltype(IdleEvent)>("IdleEvent", Idle);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(entry(), 0);
    }
    EXPECT_EQ(Lines(), (std::vector<std::string>{"1 -> IdleEvent()", "-1 <- IdleEvent took D ms, answered 0"}));
    EXPECT_EQ(folder.Lines(), "T a note\r\nT ... 2 calls as before since T; the last one IdleEvent()\r\n");
}

TEST_F(LoggedEntriesTest, RepeatedCallWithAnotherAnswerIsLoggedInFull) {
    TheDiagnosticLog().Line(0, "a note", {1, 0});
    const auto entry = Bound<decltype(IdleEvent)>("IdleEvent", Changing);
    for (const std::int32_t answer : {0, 0, 5, 5}) {
        sChanging = answer;
        EXPECT_EQ(entry(), answer);
    }
    EXPECT_EQ(Lines(), (std::vector<std::string>{"1 -> IdleEvent()", "-1 <- IdleEvent took D ms, answered 0",
                                                 "1 -> IdleEvent()", "-1 <- IdleEvent took D ms, answered 5"}));
}

TEST_F(LoggedEntriesTest, RepeatedCallThatIsSlowIsLoggedInFull) {
    TheDiagnosticLog().Line(0, "a note", {1, 0});
    auto entry = Bound<decltype(IdleEvent)>("IdleEvent", Idle);
    entry();
    entry = Bound<decltype(IdleEvent)>("IdleEvent", Slow);
    entry();
    EXPECT_EQ(Lines(), (std::vector<std::string>{"1 -> IdleEvent()", "-1 <- IdleEvent took D ms, answered 0",
                                                 "1 -> IdleEvent()", "-1 <- IdleEvent took D ms, answered 0"}));
}

std::int64_t sClock = 0;
BOOL WINAPI FakeClock(LARGE_INTEGER* ticks) {
    ticks->QuadPart = sClock;
    return TRUE;
}
BOOL WINAPI WriteForLong(HANDLE /*file*/, const void* /*bytes*/, DWORD size, DWORD* written, OVERLAPPED* /*unused*/) {
    sClock += 1'000'000'000;
    *written = size;
    return TRUE;
}

TEST_F(LoggedEntriesTest, DurationIsThatOfTheCallWithoutTheLogs) {
    TheDiagnosticLog().Line(0, "a note", {1, 0});
    const auto entry = Bound<decltype(IdleEvent)>("IdleEvent", Changing);
    const ImportPatch clock("QueryPerformanceCounter", AsReplacement(FakeClock));
    const ImportPatch disk("WriteFile", AsReplacement(WriteForLong));
    for (const std::int32_t answer : {0, 5}) {
        sChanging = answer;
        entry();
    }
    EXPECT_GT(sClock, 0);
    EXPECT_EQ(RecordedTexts().back(), "<- IdleEvent took 0.000 ms, answered 5");
}

TEST_F(LoggedEntriesTest, RepeatedCallThatThrowsIsLoggedInFull) {
    TheDiagnosticLog().Line(0, "a note", {1, 0});
    auto entry = Bound<decltype(IdleEvent)>("IdleEvent", Idle);
    entry();
    entry = Bound<decltype(IdleEvent)>("IdleEvent", ThrowForeign);
    EXPECT_THROW(entry(), ForeignException);
    EXPECT_EQ(Lines().size(), 4u);
    EXPECT_EQ(Lines().back(), "-1 <- IdleEvent took D ms, threw an exception of Visual C++ (0xE06D7363)");
}

TEST_F(LoggedEntriesTest, RepeatedCallThatLogsSomethingEndsBehindItWithoutASecondBeginning) {
    TheDiagnosticLog().Line(0, "a note", {1, 0});
    auto entry = Bound<decltype(IdleEvent)>("IdleEvent", Idle);
    entry();
    entry = Bound<decltype(IdleEvent)>("IdleEvent", LogFromWithin);
    entry();
    EXPECT_EQ(Lines(), (std::vector<std::string>{"1 -> IdleEvent()", "-1 <- IdleEvent took D ms, answered 0",
                                                 "0 <- IdleEvent (begun above) took D ms, answered 0"}));
    EXPECT_EQ(folder.Lines(), "T a note\r\nT ... 0 calls as before since T; now in IdleEvent()\r\nT from within\r\n");
}

TEST_F(LoggedEntriesTest, CallIsNamedAgainOnceARepeatedOneWithinItHasEnded) {
    TheDiagnosticLog().Line(0, "a note", {1, 0});
    static const auto sIdle = Bound<decltype(IdleEvent)>("IdleEvent", Idle);
    sTick = [] { return sIdle(); };
    sFolder = &folder;
    const auto process = Bound<decltype(ProcessPanelMessages)>("ProcessPanelMessages", TickWithin);
    sIdle();
    for (int i = 1; i <= 2; ++i) {
        process(1);
        EXPECT_TRUE(sLinesAfterTick.ends_with(" as before since T; now in ProcessPanelMessages(1)\r\n"))
            << i << ": " << sLinesAfterTick;
    }
    sIdle();
    EXPECT_TRUE(folder.Lines().ends_with("; the last one IdleEvent()\r\n")) << folder.Lines();
}

class CallWithinARepeatedOneTest : public LoggedEntriesTest {
  protected:
    CallWithinARepeatedOneTest() {
        TheDiagnosticLog().Line(0, "a note", {1, 0});
        sIdle = Bound<decltype(IdleEvent)>("IdleEvent", Idle);
        sTick = [] { return sIdle(); };
        sFolder = &folder;
        outer = Bound<decltype(ProcessPanelMessages)>("ProcessPanelMessages", TickWithin);
        outer(1);
        ClearRecordedLog();
    }

    static inline EntryPoint<decltype(IdleEvent)> sIdle;
    EntryPoint<decltype(ProcessPanelMessages)> outer;
};

// Its "then one ..." takes the place of the line that has named the outer call.
TEST_F(CallWithinARepeatedOneTest, WithAnotherAnswerNamesTheOuterOneAgain) {
    sChanging = 5;
    sIdle = Bound<decltype(IdleEvent)>("IdleEvent", Changing);
    outer(1);
    EXPECT_EQ(Lines(),
              (std::vector<std::string>{"1 -> IdleEvent()",
                                        "-1 <- IdleEvent took D ms, answered 5; now in ProcessPanelMessages(1)"}));
}

TEST_F(CallWithinARepeatedOneTest, ThatThrowsNamesTheOuterOneAgain) {
    sIdle = Bound<decltype(IdleEvent)>("IdleEvent", ThrowForeign);
    sTick = [] {
        EXPECT_THROW(sIdle(), ForeignException);
        return 0;
    };
    outer(1);
    EXPECT_EQ(Lines().at(1),
              "-1 <- IdleEvent took D ms, threw an exception of Visual C++ (0xE06D7363); now in "
              "ProcessPanelMessages(1)");
}

TEST_F(CallWithinARepeatedOneTest, ThatLogsSomethingNamesTheOuterOneAgain) {
    sIdle = Bound<decltype(IdleEvent)>("IdleEvent", LogFromWithin);
    outer(1);
    EXPECT_EQ(Lines().at(0), "0 <- IdleEvent (begun above) took D ms, answered 0; now in ProcessPanelMessages(1)");
}

TEST(LoggedEntries, LibraryIsToldOnceWithItsVersionAndPath) {
    const LogFolderGuard folder;
    InterposeLoggedEntry(nullptr, "IdleEvent", nullptr);
    EXPECT_TRUE(RecordedTexts().empty());
    InterposeLoggedEntry(GetModuleHandleW(nullptr), "IdleEvent", Address(Idle));
    InterposeLoggedEntry(GetModuleHandleW(nullptr), "GetMenus", Address(Answer));
    wchar_t path[1024];
    const std::wstring program(path, GetModuleFileNameW(nullptr, path, 1024));
    EXPECT_EQ(RecordedTexts(), std::vector<std::string>{"PluginCore: 1.2.3.4  " + Utf8FromWindowsText(program)});
}

}  // namespace
