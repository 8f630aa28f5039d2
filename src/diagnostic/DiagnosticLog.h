// The log of the diagnostic plug-in: every line with its time, indented by the operations that are open, to the file of
// the run and to the debugger. The first line of a run is preceded by a header.
//
// Thread: any. The indentation is that of the thread which the host's messages come on; lines of others begin with the
// thread's number.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "diagnostic/LogFile.h"
#include "diagnostic/LogNesting.h"
#include "diagnostic/RepeatedCalls.h"
#include "diagnostic/RunHeader.h"
#include "support/Log.h"

// How a call ended that looked like a repetition.
enum class RepetitionEnd {
    kAsBefore,      // it is counted
    kOtherwise,     // the last line tells so
    kBehindOthers,  // its count has ended while it was under way: its beginning is told above
};

// A call that looks like an earlier one, or not: then it is false.
struct Repetition {
    std::string_view call;
    unsigned count = 0;  // the number of the count that it has begun in

    explicit operator bool() const noexcept { return count != 0; }
};

class DiagnosticLog {
  public:
    // A line of the plug-in, with its level as LogSink.h tells it.
    void Line(std::int32_t level, const char* text, LinePlace place) noexcept;
    // The run ends: the module is unloaded, or the whole process ends. Further lines are still written in the second
    // case, and begin a new run in the first.
    void End(bool processEnds) noexcept;
    // The version and path of the PluginCore, for the heads of later parts: the first part is the first one to be
    // deleted.
    void RememberPluginCore(std::string_view text) noexcept;

    // Calls of the PluginCore, by the line before the call and by its answer. A repetition is not logged in full: a
    // line at the end of the log, written over each time, counts such calls and names the one that is under way.
    //
    // `call` has to outlive the answer.
    Repetition BeginRepetition(std::string_view call) noexcept;
    // `outer` is the call that it was made within, which is under way again; empty when there is none.
    RepetitionEnd EndRepetition(const Repetition& repetition, std::string_view answer, std::string_view outer) noexcept;
    // It has not ended as before.
    RepetitionEnd BreakRepetition(const Repetition& repetition) noexcept;
    // For calls that were logged in full.
    void RememberCall(std::string_view call, std::string_view answer) noexcept;

  private:
    void BeginRunIfNone();
    void WriteHeader(const LocalMoment& now);
    void WriteDateIfNew(const SYSTEMTIME& now);
    void Write(std::string_view line);
    bool IsCounting(const SYSTEMTIME& now) const noexcept;
    bool HasBegunInCount(const Repetition& repetition) const noexcept;
    void BeginCountIfNone();
    void WriteRepetitions(std::string_view state, std::string_view call);
    void FinishRepetitions();
    std::size_t LevelOf(std::int32_t level, std::string_view text, LinePlace place);
    void TellDebugger(std::string_view line);

    // A text that is not UTF-8 grows to three times its size at most when it becomes it, a control character to four.
    static constexpr std::size_t kGrowth = 4;
    static constexpr std::size_t kBeforeText = 256;  // time, indentation, thread
    static constexpr std::size_t kLineSize = kLogBufferSize * kGrowth + kBeforeText;

    SRWLOCK mLock = SRWLOCK_INIT;
    bool mHasBegun = false;
    LogFile mFile;
    LogNesting mNesting;
    RepeatedCalls mRepeated;
    DWORD mThread = 0;
    SYSTEMTIME mDay{};  // of the last line
    // Of the calls that are only counted.
    bool mIsCounting = false;
    unsigned mCount = 0;  // its number, or that of the last one
    unsigned mRepetitions = 0;
    SYSTEMTIME mFirstRepetition{};
    char mPluginCore[2048] = {};
    // Where lines are put together.
    char mLine[kLineSize] = {};
    char mUtf8[kLineSize] = {};
    wchar_t mWide[kLineSize] = {};
};

// The one of the module.
DiagnosticLog& TheDiagnosticLog() noexcept;
