#include "diagnostic/DiagnosticLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "doubles/common/ImportPatch.h"
#include "LogFolderGuard.h"

namespace {

namespace fs = std::filesystem;

std::vector<std::wstring> sDebuggerLines;

void WINAPI RecordDebuggerLine(LPCWSTR text) { sDebuggerLines.emplace_back(text); }

class DiagnosticLogTest : public testing::Test {
  protected:
    DiagnosticLogTest() { sDebuggerLines.clear(); }

    void Note(const std::string& text) { log.Line(0, text.c_str(), {5000, 0}); }
    void Enter(const std::string& operation, std::uintptr_t stack) {
        log.Line(1, ("Entering " + operation).c_str(), {stack, HashOf(operation)});
    }
    void Exit(const std::string& operation, std::uintptr_t stack) {
        log.Line(-1, ("Exiting " + operation).c_str(), {stack, 0});
    }
    // A tick of the host, answered as ever.
    void Tick() {
        const Repetition repetition = log.BeginRepetition("-> IdleEvent()");
        if (!repetition) {
            log.Line(1, "-> IdleEvent()", {5000, 1});
            log.Line(-1, "<- IdleEvent took 0.1 ms, answered 0", {5000, 0});
            log.RememberCall("-> IdleEvent()", "answered 0");
        } else {
            EXPECT_EQ(log.EndRepetition(repetition, "answered 0", {}), RepetitionEnd::kAsBefore);
        }
    }

    LogFolderGuard folder;
    ImportPatch debugger{"OutputDebugStringW", AsReplacement(RecordDebuggerLine)};
    DiagnosticLog& log = TheDiagnosticLog();
};

TEST_F(DiagnosticLogTest, FileBeginsWithTheHeaderAndEndsWithTheEnd) {
    Note("a note");
    log.End(false);
    const std::string text = folder.Text();
    EXPECT_TRUE(text.starts_with("==== Quorvel Type Agent, diagnostic log ====\r\nDate:     ")) << text;
    EXPECT_EQ(folder.Lines(), "T a note\r\nT ==== the run ends: the plug-in is unloaded ====\r\n");
}

TEST_F(DiagnosticLogTest, EndOfTheProcessIsToldAndLateLinesAreStillWritten) {
    Note("a note");
    log.End(true);
    Note("late");
    EXPECT_EQ(folder.Lines(), "T a note\r\nT ==== the run ends: the host's process ends ====\r\nT late\r\n");
}

TEST_F(DiagnosticLogTest, NewRunTellsInFullWhatTheOneBeforeHasTold) {
    Tick();
    log.End(false);
    EXPECT_FALSE(log.BeginRepetition("-> IdleEvent()"));
}

TEST_F(DiagnosticLogTest, EndWithoutALineWritesNothing) {
    log.End(false);
    log.End(true);
    EXPECT_TRUE(folder.Files().empty());
}

// Within its line, it has stopped in the call that asks for the local time.
class StoppedThread {
  public:
    StoppedThread() {
        sHasStopped = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        sMayGoOn = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        const ImportPatch patch("SystemTimeToTzSpecificLocalTime", AsReplacement(Stop));
        mThread = CreateThread(nullptr, 0, Log, nullptr, 0, nullptr);
        WaitForSingleObject(sHasStopped, INFINITE);
    }
    StoppedThread(const StoppedThread&) = delete;
    StoppedThread& operator=(const StoppedThread&) = delete;
    ~StoppedThread() {
        SetEvent(sMayGoOn);
        WaitForSingleObject(mThread, INFINITE);
        for (const HANDLE each : {mThread, sHasStopped, sMayGoOn}) {
            CloseHandle(each);
        }
    }

    // As Windows does when the process ends.
    void Terminate() {
        TerminateThread(mThread, 0);
        WaitForSingleObject(mThread, INFINITE);
    }

  private:
    static BOOL WINAPI Stop(const TIME_ZONE_INFORMATION*, const SYSTEMTIME*, SYSTEMTIME* local) {
        SetEvent(sHasStopped);
        WaitForSingleObject(sMayGoOn, INFINITE);
        GetLocalTime(local);
        return TRUE;
    }
    static DWORD WINAPI Log(void*) {
        TheDiagnosticLog().Line(0, "of the stopped thread", {1, 0});
        return 0;
    }

    static inline HANDLE sHasStopped = nullptr;
    static inline HANDLE sMayGoOn = nullptr;
    HANDLE mThread;
};

TEST_F(DiagnosticLogTest, EveryFunctionWaitsUntilTheLineOfAnotherThreadIsWritten) {
    using Function = void (*)(DiagnosticLog&);
    constexpr Function kFunctions[] = {
        [](DiagnosticLog& target) {
            target.Line(0, "late", {1, 0});
        },
        [](DiagnosticLog& target) { target.RememberPluginCore("4.3.2.1  C:\\core.dll"); },
        [](DiagnosticLog& target) { target.BeginRepetition("-> IdleEvent()"); },
        [](DiagnosticLog& target) {
            target.EndRepetition({"-> IdleEvent()", 1}, "answered 0", {});
        },
        [](DiagnosticLog& target) {
            target.BreakRepetition({"-> IdleEvent()", 1});
        },
        [](DiagnosticLog& target) { target.RememberCall("-> IdleEvent()", "answered 0"); },
        [](DiagnosticLog& target) { target.End(false); },
    };
    constexpr DWORD kLongEnoughInMilliseconds = 100;
    struct Caller {
        static DWORD WINAPI Call(void* function) {
            (*static_cast<const Function*>(function))(TheDiagnosticLog());
            return 0;
        }
    };
    for (std::size_t i = 0; i < std::size(kFunctions); ++i) {
        Function function = kFunctions[i];
        Note("a note");
        HANDLE caller = nullptr;
        {
            const StoppedThread other;
            caller = CreateThread(nullptr, 0, Caller::Call, &function, 0, nullptr);
            EXPECT_EQ(WaitForSingleObject(caller, kLongEnoughInMilliseconds), DWORD{WAIT_TIMEOUT}) << "function " << i;
        }
        WaitForSingleObject(caller, INFINITE);
        CloseHandle(caller);
    }
}

BOOLEAN NTAPI Yes() { return TRUE; }
FARPROC WINAPI FindEndOfProcess(HMODULE, LPCSTR name) {
    EXPECT_STREQ(name, "RtlDllShutdownInProgress");
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(Yes));
}

int sReleases = 0;
decltype(&ReleaseSRWLockExclusive) sRelease = nullptr;
// Of other threads as well: the watchdog's own locks must work.
void WINAPI CountRelease(SRWLOCK* lock) {
    ++sReleases;
    sRelease(lock);
}

TEST_F(DiagnosticLogTest, EndOfTheProcessDoesNotWaitForAThreadThatIsGone) {
    Note("a note");
    StoppedThread().Terminate();
    {
        const ImportPatch patch("GetProcAddress", AsReplacement(FindEndOfProcess));
        {
            sReleases = 0;
            sRelease = reinterpret_cast<decltype(sRelease)>(
                ImportedFunction(GetModuleHandleW(nullptr), "ReleaseSRWLockExclusive"));
            const ImportPatch release("ReleaseSRWLockExclusive", AsReplacement(CountRelease));
            Note("DllMain");
            log.End(true);
        }
        EXPECT_EQ(folder.Lines(), "T a note\r\nT DllMain\r\nT ==== the run ends: the host's process ends ====\r\n");
        log.End(false);
    }
    // The lock stays with the thread that is gone.
    EXPECT_EQ(sReleases, 0);
    new (&log) DiagnosticLog();
}

TEST_F(DiagnosticLogTest, LinesAreIndentedByTwoColumnsAndRepairThemselves) {
    Enter("PluginMain('a', 'b', ...)", 9000);
    Enter("A", 8000);
    Enter("B", 7000);
    Enter("C", 6000);
    log.Line(0, "Unhandled exception in Brightbox plugin.", {8900, 0});
    Exit("PluginMain('a', 'b', ...)", 9000);
    Note("outside");
    EXPECT_EQ(folder.Lines(),
              "T Entering PluginMain('a', 'b', ...)\r\n"
              "T   Entering A\r\n"
              "T     Entering B\r\n"
              "T       Entering C\r\n"
              "T   Unhandled exception in Brightbox plugin.\r\n"
              "T Exiting PluginMain('a', 'b', ...)\r\n"
              "T outside\r\n");
}

TEST_F(DiagnosticLogTest, NoteThatBeginsWithTheNameOfAnOperationDoesNotEndIt) {
    Enter("Outer", 4000);
    log.Line(0, "Outer tells of itself", {3900, 0});
    log.Line(0, "and more", {3900, 0});
    Exit("Outer", 4000);
    EXPECT_EQ(folder.Lines(), "T Entering Outer\r\nT   Outer tells of itself\r\nT   and more\r\nT Exiting Outer\r\n");
}

TEST_F(DiagnosticLogTest, DeepNestingIndentsBy200ColumnsAtMostAndLongLinesStayWhole) {
    for (std::uintptr_t i = 0; i < 150; ++i) {
        Enter("Deep" + std::to_string(i), 9000 - i);
    }
    const std::string longest(8191, 'x');
    log.Line(0, longest.c_str(), {1000, 0});
    EXPECT_TRUE(folder.Lines().ends_with("\r\nT " + std::string(200, ' ') + longest + "\r\n"));
    EXPECT_TRUE(sDebuggerLines.back().ends_with(std::wstring(200, L' ') + std::wstring(8191, L'x') + L"\r\n"));
}

TEST_F(DiagnosticLogTest, LongestLineInTheAnsiCodePageStaysWhole) {
    const std::string longest(8191, '\xE9');
    Note(longest);
    // Whatever the code page makes of it, nothing is missing.
    EXPECT_GE(folder.Lines().size(), longest.size() + std::string("T \r\n").size());
}

TEST_F(DiagnosticLogTest, LineThatEndsInALineFeedHasOnlyOneEnd) {
    Note("with an end\n");
    Note("100 %s");
    EXPECT_EQ(folder.Lines(), "T with an end\r\nT 100 %s\r\n");
}

TEST_F(DiagnosticLogTest, LineFeedWithinALineBeginsNoOtherLine) {
    Note("one\r\n12:00:00.000 ==== the run ends\ttwo\n");
    EXPECT_EQ(folder.Lines(), "T one\\r\\nT ==== the run ends\\ttwo\r\n");
}

TEST_F(DiagnosticLogTest, LongestLineOfControlCharactersStaysWhole) {
    Note(std::string(8190, '\a') + "x");
    EXPECT_TRUE(folder.Lines().ends_with("<07>x\r\n"));
}

TEST_F(DiagnosticLogTest, DebuggerIsToldTheSame) {
    Note("one \xE2\x82\xAC");
    log.End(false);
    ASSERT_EQ(sDebuggerLines.size(), 3u);
    EXPECT_TRUE(sDebuggerLines[0].starts_with(L"==== Quorvel Type Agent"));
    EXPECT_TRUE(sDebuggerLines[1].ends_with(L" one \u20AC\r\n"));
    EXPECT_TRUE(sDebuggerLines[2].ends_with(L" ==== the run ends: the plug-in is unloaded ====\r\n"));
}

TEST_F(DiagnosticLogTest, LastErrorIsKept) {
    SetLastError(4711);
    Note("a note");
    EXPECT_EQ(GetLastError(), 4711u);
    log.BeginRepetition("-> IdleEvent()");
    EXPECT_EQ(GetLastError(), 4711u);
    log.End(false);
    EXPECT_EQ(GetLastError(), 4711u);
}

DWORD WINAPI LogFromThread(void*) {
    TheDiagnosticLog().Line(1, "Entering B", {9500, 0});
    TheDiagnosticLog().Line(-1, "Exiting B", {9500, 0});
    return 0;
}

TEST_F(DiagnosticLogTest, LinesOfOtherThreadsAreMarkedAndLeaveTheIndentationAlone) {
    Enter("A", 8000);
    DWORD number = 0;
    const HANDLE thread = CreateThread(nullptr, 0, LogFromThread, nullptr, 0, &number);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    Note("in A");
    const std::string mark = "T [thread " + std::to_string(number) + "] ";
    EXPECT_EQ(folder.Lines(), "T Entering A\r\n" + mark + "Entering B\r\n" + mark + "Exiting B\r\nT   in A\r\n");
}

DWORD WINAPI SendMessageFromThread(void*) {
    TheDiagnosticLog().Line(1, "Entering PluginMain('a', 'b', ...)", {9500, 0});
    TheDiagnosticLog().Line(0, "in the message", {9400, 0});
    return 0;
}

TEST_F(DiagnosticLogTest, ThreadThatMessagesComeOnIsTheOneThatIsIndented) {
    Note("loaded");
    const HANDLE thread = CreateThread(nullptr, 0, SendMessageFromThread, nullptr, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    EXPECT_EQ(folder.Lines(), "T loaded\r\nT Entering PluginMain('a', 'b', ...)\r\nT   in the message\r\n");
}

TEST_F(DiagnosticLogTest, PartsBeginWithTheHeaderAndNoLineIsTorn) {
    log.RememberPluginCore("4.3.2.1  C:\\core.dll");
    const std::string line(8000, 'x');
    constexpr int kLines = 600;  // more than 4 MiB
    for (int i = 0; i < kLines; ++i) {
        Note(line);
    }
    const auto files = folder.Files();
    ASSERT_EQ(files.size(), 2u);
    // "...-part2.log" comes before "....log".
    const std::string second = ReadWholeFile(files[0]);
    const std::string first = ReadWholeFile(files[1]);
    EXPECT_LE(first.size(), 4u * 1024 * 1024);
    EXPECT_GT(first.size() + 8100, 4u * 1024 * 1024);
    EXPECT_TRUE(first.ends_with("x\r\n"));
    EXPECT_TRUE(second.starts_with("==== Quorvel Type Agent, diagnostic log, part 2 of the run ====\r\n"));
    EXPECT_NE(second.substr(0, second.find("\r\n\r\n") + 2).find("\r\nPluginCore: 4.3.2.1  C:\\core.dll\r\n"),
              std::string::npos);
    EXPECT_EQ(first.find("PluginCore"), std::string::npos);
    const auto count = [&](const std::string& text) {
        std::size_t found = 0;
        for (std::size_t at = text.find(line); at != std::string::npos; at = text.find(line, at + line.size())) {
            ++found;
        }
        return found;
    };
    EXPECT_EQ(count(first) + count(second), static_cast<std::size_t>(kLines));
}

SYSTEMTIME sFakeTime{};
BOOL WINAPI FakeLocalTime(const TIME_ZONE_INFORMATION*, const SYSTEMTIME*, SYSTEMTIME* local) {
    *local = sFakeTime;
    return TRUE;
}

TEST_F(DiagnosticLogTest, NewDayIsToldOnce) {
    const ImportPatch patch("SystemTimeToTzSpecificLocalTime", AsReplacement(FakeLocalTime));
    sFakeTime = {2026, 12, 4, 31, 23, 59, 59, 999};
    Note("old");
    sFakeTime = {2027, 1, 5, 1, 0, 0, 0, 0};
    Note("new");
    Note("still");
    EXPECT_EQ(folder.Lines(), "T old\r\n---- 2027-01-01 ----\r\nT new\r\nT still\r\n");
}

TEST_F(DiagnosticLogTest, NewDayIsToldBeforeTheEndOfTheRun) {
    const ImportPatch patch("SystemTimeToTzSpecificLocalTime", AsReplacement(FakeLocalTime));
    sFakeTime = {2026, 12, 4, 31, 23, 59, 59, 999};
    Note("old");
    sFakeTime = {2027, 1, 5, 1, 0, 0, 0, 0};
    log.End(true);
    EXPECT_EQ(folder.Lines(), "T old\r\n---- 2027-01-01 ----\r\nT ==== the run ends: the host's process ends ====\r\n");
}

TEST_F(DiagnosticLogTest, NewDayBeginsACountOfItsOwn) {
    const ImportPatch patch("SystemTimeToTzSpecificLocalTime", AsReplacement(FakeLocalTime));
    sFakeTime = {2026, 12, 4, 31, 23, 59, 59, 999};
    for (int i = 0; i < 3; ++i) {
        Tick();
    }
    sFakeTime = {2027, 1, 5, 1, 0, 0, 0, 0};
    Tick();
    // Nor is a call counted that lasts past midnight: the line of the day before says that it is under way.
    const Repetition late = log.BeginRepetition("-> IdleEvent()");
    sFakeTime = {2027, 1, 6, 2, 0, 0, 0, 0};
    EXPECT_EQ(log.EndRepetition(late, "answered 0", {}), RepetitionEnd::kBehindOthers);
    EXPECT_EQ(log.BreakRepetition(late), RepetitionEnd::kBehindOthers);
    Note("<- IdleEvent (begun above) took 0.1 ms, answered 0");
    EXPECT_TRUE(
        folder.Lines().ends_with("T ... 2 calls as before since T; the last one IdleEvent()\r\n"
                                 "---- 2027-01-01 ----\r\n"
                                 "T ... 1 call as before since T; now in IdleEvent()\r\n"
                                 "---- 2027-01-02 ----\r\n"
                                 "T <- IdleEvent (begun above) took 0.1 ms, answered 0\r\n"))
        << folder.Lines();
    EXPECT_EQ(std::count(sDebuggerLines.begin(), sDebuggerLines.end(), L"... 2 calls as before\r\n"), 1);
}

// --- calls that come again and again ------------------------------------------------------------------------------

TEST_F(DiagnosticLogTest, RepeatedCallsAreCountedInOneLine) {
    for (int i = 0; i < 4; ++i) {
        Tick();
    }
    EXPECT_EQ(folder.Lines(),
              "T -> IdleEvent()\r\n"
              "T <- IdleEvent took 0.1 ms, answered 0\r\n"
              "T ... 3 calls as before since T; the last one IdleEvent()\r\n");
}

TEST_F(DiagnosticLogTest, RepeatedCallThatHangsIsTheLastLine) {
    for (int i = 0; i < 4; ++i) {
        Tick();
    }
    const Repetition idle = log.BeginRepetition("-> IdleEvent()");
    EXPECT_TRUE(idle);
    EXPECT_TRUE(folder.Lines().ends_with("\r\nT ... 3 calls as before since T; now in IdleEvent()\r\n"))
        << folder.Lines();
    log.EndRepetition(idle, "answered 0", {});
}

TEST_F(DiagnosticLogTest, LineOfThePluginEndsTheCountAndTheNextTickIsInFull) {
    Tick();
    Tick();
    Note("a note");
    Tick();
    Tick();
    EXPECT_EQ(folder.Lines(),
              "T -> IdleEvent()\r\n"
              "T <- IdleEvent took 0.1 ms, answered 0\r\n"
              "T ... 1 call as before since T; the last one IdleEvent()\r\n"
              "T a note\r\n"
              "T -> IdleEvent()\r\n"
              "T <- IdleEvent took 0.1 ms, answered 0\r\n"
              "T ... 1 call as before since T; the last one IdleEvent()\r\n");
}

TEST_F(DiagnosticLogTest, AnotherAnswerIsLoggedInFull) {
    Tick();
    const Repetition idle = log.BeginRepetition("-> IdleEvent()");
    EXPECT_EQ(log.EndRepetition(idle, "answered 1", {}), RepetitionEnd::kOtherwise);
    log.Line(1, "-> IdleEvent()", {5000, 1});
    EXPECT_TRUE(
        folder.Lines().ends_with("T ... 0 calls as before since T; then one with another answer: IdleEvent()\r\n"
                                 "T -> IdleEvent()\r\n"))
        << folder.Lines();
}

TEST_F(DiagnosticLogTest, CallThatEndsOtherwiseIsToldAndForgotten) {
    Tick();
    EXPECT_EQ(log.BreakRepetition(log.BeginRepetition("-> IdleEvent()")), RepetitionEnd::kOtherwise);
    EXPECT_TRUE(
        folder.Lines().ends_with("T ... 0 calls as before since T; then one that ended otherwise: IdleEvent()\r\n"));
    EXPECT_FALSE(log.BeginRepetition("-> IdleEvent()"));
}

TEST_F(DiagnosticLogTest, RepeatedCallThatLogsSomethingEndsBehindIt) {
    Tick();
    const Repetition idle = log.BeginRepetition("-> IdleEvent()");
    Note("from within");
    EXPECT_EQ(log.EndRepetition(idle, "answered 0", {}), RepetitionEnd::kBehindOthers);
    EXPECT_EQ(log.BreakRepetition(idle), RepetitionEnd::kBehindOthers);
    // Nor is it counted with what comes after that line.
    log.RememberCall("-> Other()", "answered 0");
    const Repetition other = log.BeginRepetition("-> Other()");
    EXPECT_EQ(log.EndRepetition(idle, "answered 0", {}), RepetitionEnd::kBehindOthers);
    EXPECT_TRUE(
        folder.Lines().ends_with("; now in IdleEvent()\r\nT from within\r\n"
                                 "T ... 0 calls as before since T; now in Other()\r\n"))
        << folder.Lines();
    log.BreakRepetition(other);
}

TEST_F(DiagnosticLogTest, RepeatedCallWithinAnotherNamesTheOuterOneAgainOnceItHasEnded) {
    Tick();
    log.RememberCall("-> Inner()", "answered 0");
    const Repetition idle = log.BeginRepetition("-> IdleEvent()");
    const Repetition inner = log.BeginRepetition("-> Inner()");
    EXPECT_EQ(log.EndRepetition(inner, "answered 0", "-> IdleEvent()"), RepetitionEnd::kAsBefore);
    EXPECT_TRUE(folder.Lines().ends_with("\r\nT ... 1 call as before since T; now in IdleEvent()\r\n"))
        << folder.Lines();
    EXPECT_EQ(log.EndRepetition(idle, "answered 0", {}), RepetitionEnd::kAsBefore);
    EXPECT_TRUE(folder.Lines().ends_with("\r\nT ... 2 calls as before since T; the last one IdleEvent()\r\n"))
        << folder.Lines();
}

// Else its name above would lack an end for good, and a later hang would be blamed on it.
TEST_F(DiagnosticLogTest, RepeatedCallWithinWhichAnotherCountHasBegunEndsBehindIt) {
    Tick();
    log.RememberCall("-> Outer()", "answered 0");
    const Repetition outer = log.BeginRepetition("-> Outer()");
    const Repetition idle = log.BeginRepetition("-> IdleEvent()");
    EXPECT_EQ(log.EndRepetition(idle, "answered 5", "-> Outer()"), RepetitionEnd::kOtherwise);
    log.Line(1, "-> IdleEvent()", {5000, 1});
    log.Line(-1, "<- IdleEvent took 0.1 ms, answered 5; now in Outer()", {5000, 0});
    log.RememberCall("-> IdleEvent()", "answered 5");
    const Repetition next = log.BeginRepetition("-> IdleEvent()");
    EXPECT_EQ(log.EndRepetition(next, "answered 5", "-> Outer()"), RepetitionEnd::kAsBefore);
    EXPECT_EQ(log.EndRepetition(outer, "answered 0", {}), RepetitionEnd::kBehindOthers);
    EXPECT_EQ(log.BreakRepetition(outer), RepetitionEnd::kBehindOthers);
}

TEST_F(DiagnosticLogTest, RepeatedCallInTheAnsiCodePageIsWrittenAsUtf8) {
    Note("a note");
    const std::string call = "-> Ask(\"J\xF6rg\")";
    log.RememberCall(call, "answered 0");
    const Repetition repetition = log.BeginRepetition(call);
    const std::string lines = folder.Lines();
    EXPECT_EQ(lines.find('\xF6'), std::string::npos) << lines;
    EXPECT_NE(lines.find("; now in Ask(\"J"), std::string::npos) << lines;
    EXPECT_TRUE(lines.ends_with("rg\")\r\n")) << lines;
    log.BreakRepetition(repetition);
}

TEST_F(DiagnosticLogTest, DebuggerIsToldOfRepeatedCallsOnceTheyEnd) {
    for (int i = 0; i < 4; ++i) {
        Tick();
    }
    const std::size_t before = sDebuggerLines.size();
    Note("a note");
    ASSERT_EQ(sDebuggerLines.size(), before + 2);
    EXPECT_EQ(sDebuggerLines[before], L"... 3 calls as before\r\n");
}

// --- without a file -----------------------------------------------------------------------------------------------

TEST_F(DiagnosticLogTest, WithoutAFolderOnlyTheDebuggerIsTold) {
    WriteWholeFile(folder.LocalAppData() / "Quorvel", "a file of that name");
    Note("one");
    Tick();
    Tick();
    log.End(false);
    ASSERT_EQ(sDebuggerLines.size(), 6u);
    EXPECT_TRUE(sDebuggerLines[1].ends_with(L" one\r\n"));
}

}  // namespace
