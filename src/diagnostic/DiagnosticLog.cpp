#include "diagnostic/DiagnosticLog.h"

#include <algorithm>

#include "diagnostic/CallText.h"
#include "diagnostic/LineText.h"
#include "support/NtFunction.h"

namespace {

constexpr std::size_t kColumnsPerLevel = 2;
constexpr std::size_t kMostColumns = 200;
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kNowIn = "now in ";

// Lives as long as the module; has no destructor, because the end of the process leaves it alone.
DiagnosticLog sDiagnosticLog;

// The plug-in and the host ask for the last error after lines and calls.
class KeptLastError {
  public:
    KeptLastError() = default;
    KeptLastError(const KeptLastError&) = delete;
    KeptLastError& operator=(const KeptLastError&) = delete;
    ~KeptLastError() { SetLastError(mError); }

  private:
    DWORD mError = GetLastError();
};

bool DoesProcessEnd() noexcept {
    const auto doesEnd = NtFunction<BOOLEAN(NTAPI*)()>("RtlDllShutdownInProgress");
    return doesEnd != nullptr && doesEnd() != FALSE;
}

// When the process ends, Windows has ended all other threads, whatever they were doing: a lock that one of them has
// held is never free again, and nobody is left to lock out.
class Locked {
  public:
    explicit Locked(SRWLOCK& lock) : mLock(lock), mIsLocked(TryAcquireSRWLockExclusive(&lock) != 0) {
        if (!mIsLocked && !DoesProcessEnd()) {
            AcquireSRWLockExclusive(&lock);
            mIsLocked = true;
        }
    }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
    ~Locked() {
        if (mIsLocked) {
            ReleaseSRWLockExclusive(&mLock);
        }
    }

  private:
    SRWLOCK& mLock;
    bool mIsLocked;
};

bool IsAboutCall(std::string_view text) { return text.starts_with(kCallArrow) || text.starts_with("<- "); }

std::string_view WithoutLineEnd(std::string_view text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
        text.remove_suffix(1);
    }
    return text;
}

bool IsSameDay(const SYSTEMTIME& one, const SYSTEMTIME& other) {
    return one.wDay == other.wDay && one.wMonth == other.wMonth && one.wYear == other.wYear;
}

}  // namespace

DiagnosticLog& TheDiagnosticLog() noexcept { return sDiagnosticLog; }

void DiagnosticLog::Line(std::int32_t level, const char* text, LinePlace place) noexcept {
    const KeptLastError kept;
    const Locked locked(mLock);
    BeginRunIfNone();
    const std::string_view said = WithoutLineEnd(AsUtf8(text, mWide, mUtf8));
    FinishRepetitions();
    if (!IsAboutCall(said)) {
        mRepeated.Forget();
    }
    const LocalMoment now = LocalMoment::Now();
    WriteDateIfNew(now.time);

    TextWriter line(mLine);
    AppendTime(line, now.time);
    line.Append(" ");
    const DWORD thread = GetCurrentThreadId();
    if (level > 0 && IsEntryOfMessage(said) && thread != mThread) {
        mThread = thread;
        mNesting = LogNesting();
    }
    if (thread == mThread) {
        line.Append(' ', std::min(LevelOf(level, said, place) * kColumnsPerLevel, kMostColumns));
    } else {
        line.AppendFormat("[thread %lu] ", thread);
    }
    // A line feed within it would begin a line that nobody has logged.
    line.AppendOnOneLine(said);
    line.Append(kLineEnd);
    Write(line.Text());
    TellDebugger(line.Text());
}

std::size_t DiagnosticLog::LevelOf(std::int32_t level, std::string_view text, LinePlace place) {
    if (level > 0) {
        return mNesting.Entry(text, place);
    }
    return level < 0 ? mNesting.Exit(text, place) : mNesting.Note(place);
}

void DiagnosticLog::End(bool processEnds) noexcept {
    const KeptLastError kept;
    const Locked locked(mLock);
    if (!mHasBegun) {
        return;
    }
    FinishRepetitions();
    const SYSTEMTIME now = LocalMoment::Now().time;
    WriteDateIfNew(now);
    TextWriter line(mLine);
    AppendTime(line, now);
    line.Append(processEnds ? " ==== the run ends: the host's process ends ====\r\n"
                            : " ==== the run ends: the plug-in is unloaded ====\r\n");
    Write(line.Text());
    TellDebugger(line.Text());
    if (!processEnds) {
        mFile.Close();
        mRepeated.Forget();
        mHasBegun = false;
    }
}

void DiagnosticLog::RememberPluginCore(std::string_view text) noexcept {
    const Locked locked(mLock);
    TextWriter(mPluginCore).Append(text);
}

Repetition DiagnosticLog::BeginRepetition(std::string_view call) noexcept {
    const KeptLastError kept;
    const Locked locked(mLock);
    if (!mRepeated.IsRepetition(call)) {
        return {};
    }
    BeginCountIfNone();
    WriteRepetitions(kNowIn, call);
    return {call, mCount};
}

// A count does not go on past midnight: its line has a time and no date.
bool DiagnosticLog::IsCounting(const SYSTEMTIME& now) const noexcept { return mIsCounting && IsSameDay(mDay, now); }

void DiagnosticLog::BeginCountIfNone() {
    const SYSTEMTIME now = LocalMoment::Now().time;
    if (IsCounting(now)) {
        return;
    }
    FinishRepetitions();
    mIsCounting = true;
    ++mCount;
    mRepetitions = 0;
    mFirstRepetition = now;
    WriteDateIfNew(now);
}

// Else a line that is written over no more has named the call as the one that is under way, and lacks its end.
bool DiagnosticLog::HasBegunInCount(const Repetition& repetition) const noexcept {
    return IsCounting(LocalMoment::Now().time) && repetition.count == mCount;
}

RepetitionEnd DiagnosticLog::EndRepetition(const Repetition& repetition, std::string_view answer,
                                           std::string_view outer) noexcept {
    const KeptLastError kept;
    const Locked locked(mLock);
    if (!HasBegunInCount(repetition)) {
        return RepetitionEnd::kBehindOthers;
    }
    if (!mRepeated.WasAnswered(repetition.call, answer)) {
        WriteRepetitions("then one with another answer: ", repetition.call);
        return RepetitionEnd::kOtherwise;
    }
    ++mRepetitions;
    if (outer.empty()) {
        WriteRepetitions("the last one ", repetition.call);
    } else {
        WriteRepetitions(kNowIn, outer);
    }
    return RepetitionEnd::kAsBefore;
}

RepetitionEnd DiagnosticLog::BreakRepetition(const Repetition& repetition) noexcept {
    const KeptLastError kept;
    const Locked locked(mLock);
    const bool isInCount = HasBegunInCount(repetition);
    if (isInCount) {
        WriteRepetitions("then one that ended otherwise: ", repetition.call);
    }
    mRepeated.Forget();
    return isInCount ? RepetitionEnd::kOtherwise : RepetitionEnd::kBehindOthers;
}

void DiagnosticLog::RememberCall(std::string_view call, std::string_view answer) noexcept {
    const Locked locked(mLock);
    mRepeated.Remember(call, answer);
}

// "17:50:03.123 ... 341 calls as before since 17:49:02.001; now in IdleEvent()"
void DiagnosticLog::WriteRepetitions(std::string_view state, std::string_view call) {
    TextWriter line(mLine);
    AppendTime(line, LocalMoment::Now().time);
    line.AppendFormat(" ... %u call%s as before since ", mRepetitions, mRepetitions == 1 ? "" : "s");
    AppendTime(line, mFirstRepetition);
    line.Append("; ");
    line.Append(state);
    line.Append(AsUtf8(WithoutArrow(call), mWide, mUtf8));
    line.Append(kLineEnd);
    mFile.AppendOrReplace(line.Text());
}

void DiagnosticLog::FinishRepetitions() {
    if (!mIsCounting) {
        return;
    }
    mIsCounting = false;
    // The file has it already. It is told here, and not each time.
    TextWriter line(mLine);
    line.AppendFormat("... %u call%s as before\r\n", mRepetitions, mRepetitions == 1 ? "" : "s");
    TellDebugger(line.Text());
}

void DiagnosticLog::BeginRunIfNone() {
    if (mHasBegun) {
        return;
    }
    mHasBegun = true;
    mThread = GetCurrentThreadId();
    mNesting = LogNesting();
    const LocalMoment now = LocalMoment::Now();
    mDay = now.time;
    const std::size_t length = MakeLogFolder(mWide);
    mFile.Open({mWide, length}, now.time, GetCurrentProcessId());
    WriteHeader(now);
}

void DiagnosticLog::WriteHeader(const LocalMoment& now) {
    char memory[kLogBufferSize];
    TextWriter header(memory);
    AppendRunHeader(header, now, mFile.Part(), mPluginCore);
    mFile.Append(header.Text());
    TellDebugger(header.Text());
}

void DiagnosticLog::WriteDateIfNew(const SYSTEMTIME& now) {
    if (IsSameDay(mDay, now)) {
        return;
    }
    mDay = now;
    TextWriter line(mLine);
    line.AppendFormat("---- %04u-%02u-%02u ----\r\n", static_cast<unsigned>(now.wYear),
                      static_cast<unsigned>(now.wMonth), static_cast<unsigned>(now.wDay));
    Write(line.Text());
}

void DiagnosticLog::Write(std::string_view line) {
    if (!mFile.HasRoomFor(line.size())) {
        mFile.OpenNextPart();
        WriteHeader(LocalMoment::Now());
    }
    mFile.Append(line);
}

void DiagnosticLog::TellDebugger(std::string_view line) { OutputDebugStringW(AsWide(line, mWide)); }
