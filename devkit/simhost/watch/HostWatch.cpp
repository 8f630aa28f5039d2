#include "simhost/watch/HostWatch.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/launch/Cancellation.h"
#include "simhost/watch/CallStack.h"
#include "simhost/watch/Culprit.h"
#include "simhost/watch/EndTraps.h"
#include "simhost/watch/ExceptionWords.h"
#include "simhost/watch/LeftRunning.h"
#include "simhost/watch/OpenDialogs.h"
#include "simhost/watch/WineDebugging.h"

namespace simhost {

namespace {

constexpr DWORD kPauseMilliseconds = 20;
// A process that was told to end and does not: then its job is ended.
constexpr ULONGLONG kPatienceMilliseconds = 5000;
// Between two looks for a dialog: how much of a person's time is charged to the library at most.
constexpr ULONGLONG kLookMilliseconds = 250;
constexpr DWORD kEndedFromOutside = 1;
constexpr int kMostAttempts = 3;

class Watch {
  public:
    Watch(const HostProgram& host, const WatchLimits& limits, const FlightRecorder& recorder)
        : mHost(host), mLimits(limits), mRecorder(recorder), mBegan(GetTickCount64()) {
        Start();
    }

    ~Watch() {
        EndAll();
        CloseHandle(mProcess);
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    HostEnd Run() {
        while (!mIsGone) {
            DEBUG_EVENT event{};
            if (WaitForDebugEvent(&event, kPauseMilliseconds) != 0) {
                const DWORD answer = Handle(event);
                ContinueDebugEvent(event.dwProcessId, event.dwThreadId, answer);
            }
            ThrowIfCancelled();
            CheckLimits();
        }
        WaitForSingleObject(mProcess, kPatienceMilliseconds);
        NoteLeft(ProcessesLeft(mJob));
        EndAll();
        const FlightRecord record = mRecorder.Read();
        mEnd.hasBegun = record.hasBegun != 0;
        mEnd.concluded = record.concluded != 0;
        return std::move(mEnd);
    }

  private:
    void Start() {
        // Wine starts the process of its desktop with the first process that has to do with windows: that is not the
        // host, whose processes are counted.
        GetDesktopWindow();
        // Windows gives a program that is started by a debugger another heap otherwise.
        SetEnvironmentVariableW(L"_NO_DEBUG_HEAP", L"1");
        constexpr DWORD kFlags = DEBUG_ONLY_THIS_PROCESS | CREATE_NEW_PROCESS_GROUP;
        const PROCESS_INFORMATION process =
            mJob.Start({mHost.program, mHost.arguments, mHost.program.parent_path(), kFlags});
        mProcess = process.hProcess;
        mProcessId = process.dwProcessId;
        mMainThread = process.dwThreadId;
        mModules.emplace(mProcess, mHost.runFolder);
        mStacks.emplace(mProcess, *mModules);
        mTraps.emplace(mProcess);
        CloseHandle(process.hThread);
    }

    // Answers how the process goes on.
    DWORD Handle(const DEBUG_EVENT& event) {
        switch (event.dwDebugEventCode) {
            case CREATE_PROCESS_DEBUG_EVENT:
                // The handles of process and thread are Windows' own.
                mThreads[event.dwThreadId] = event.u.CreateProcessInfo.hThread;
                OnModule(event.u.CreateProcessInfo.hFile, event.u.CreateProcessInfo.lpBaseOfImage);
                break;
            case CREATE_THREAD_DEBUG_EVENT:
                mThreads[event.dwThreadId] = event.u.CreateThread.hThread;
                break;
            case EXIT_THREAD_DEBUG_EVENT:
                mThreads.erase(event.dwThreadId);
                break;
            case EXIT_PROCESS_DEBUG_EVENT:
                OnGone(event.u.ExitProcess.dwExitCode);
                break;
            case LOAD_DLL_DEBUG_EVENT:
                OnModule(event.u.LoadDll.hFile, event.u.LoadDll.lpBaseOfDll);
                break;
            case UNLOAD_DLL_DEBUG_EVENT:
                mModules->Unloaded(event.u.UnloadDll.lpBaseOfDll);
                break;
            case EXCEPTION_DEBUG_EVENT:
                return OnException(event);
            default:
                break;
        }
        return DBG_CONTINUE;
    }

    void OnModule(HANDLE file, const void* base) {
        mModules->Loaded(file, base);
        if (file != nullptr) {
            CloseHandle(file);
        }
    }

    DWORD OnException(const DEBUG_EVENT& event) {
        const EXCEPTION_RECORD& record = event.u.Exception.ExceptionRecord;
        const HANDLE thread = mThreads[event.dwThreadId];
        // The first breakpoint is the loader's: the process is ready to begin.
        if (record.ExceptionCode == EXCEPTION_BREAKPOINT && !std::exchange(mIsReady, true)) {
            mTraps->Set();
            KeepThrownExceptionsInside(mProcess);
            return DBG_CONTINUE;
        }
        if (mTraps->Handles(event, thread)) {
            if (const auto attempt = mTraps->TakeAttempt()) {
                OnEndAttempt(*attempt, event.dwThreadId, thread);
            }
            return DBG_CONTINUE;
        }
        // Raised for debuggers alone.
        if (record.ExceptionCode == EXCEPTION_INVALID_HANDLE && event.u.Exception.dwFirstChance != 0) {
            return DBG_CONTINUE;
        }
        if (event.u.Exception.dwFirstChance == 0) {
            OnCrash(record, mStacks->ReadFrom(thread), event.dwThreadId);
        } else if (IsFault(record.ExceptionCode)) {
            mLastFault = {record, mStacks->ReadFrom(thread), event.dwThreadId};
        }
        return DBG_EXCEPTION_NOT_HANDLED;
    }

    void OnCrash(const EXCEPTION_RECORD& record, const CallStack& stack, DWORD thread) {
        const Culprit culprit = CulpritOf(stack);
        const std::string where = thread == mMainThread ? " " : std::string(" ") + kOnOtherThread + " ";
        Lose(IsFailFast(record.ExceptionCode) ? Rule::kFailFast : Rule::kCrash,
             InWords(record) + where + InWords(culprit), ModuleOf(culprit));
    }

    void OnEndAttempt(const EndAttempt& attempt, DWORD threadId, HANDLE thread) {
        if (mIsLost || (attempt.kind == EndKind::kThread && threadId != mMainThread)) {
            return;
        }
        if (mRecorder.Read().concluded != 0) {
            if (mLimits.tellsThreadsLeft) {
                NoteLeft(ThreadsLeft(mThreads, threadId, *mStacks, *mModules, mHost.program));
            }
            mTraps->Remove();
            return;
        }
        const Culprit culprit = CulpritOf(mStacks->ReadFrom(thread));
        const std::string what = attempt.kind == EndKind::kThread ? "the main thread" : "the process";
        const std::string ended = what + " was ended with code " + ExitCodeInWords(attempt.code) + " ";
        const bool isByHost = !culprit.guest && culprit.code && culprit.code->module != nullptr &&
                              culprit.code->module->path.filename() == mHost.program.filename();
        if (isByHost) {
            Lose(Rule::kLostVerdict, ended + InWords(culprit), ModuleOf(culprit));
        } else if (culprit.called == "abort") {
            Lose(Rule::kCrash, "abort() was called " + InWords(culprit), ModuleOf(culprit));
        } else {
            Lose(Rule::kProcessEnded, ended + InWords(culprit), ModuleOf(culprit));
        }
    }

    void OnGone(DWORD exitCode) {
        mIsGone = true;
        if (mIsLost || mRecorder.Read().concluded != 0) {
            return;
        }
        if (mLastFault && mLastFault->record.ExceptionCode == exitCode) {
            OnCrash(mLastFault->record, mLastFault->stack, mLastFault->thread);
        } else if (IsFailFast(exitCode)) {
            Lose(Rule::kFailFast, "the process ended with " + NameOfException(exitCode), "");
        } else {
            Lose(Rule::kLostVerdict,
                 "the process was ended from outside, without a result; its exit code is " + ExitCodeInWords(exitCode),
                 "");
        }
    }

    void CheckLimits() {
        const ULONGLONG now = GetTickCount64();
        if (mIsLost && now > mLostAt + kPatienceMilliseconds) {
            EndAll();
            mIsGone = true;
        }
        if (mIsLost || mIsGone) {
            return;
        }
        const FlightRecord record = mRecorder.Read();
        LookForDialogOfPerson(record, now);
        const ULONGLONG began = std::max<ULONGLONG>(record.stepBegan, mDialogSeenAt);
        const auto inStep = record.stepBegan == 0 ? 0 : static_cast<std::int64_t>(now - began);
        if (inStep > mLimits.stepSeconds * 1000) {
            OnStepLimit(record);
        } else if (static_cast<std::int64_t>(now - mBegan) > mLimits.runSeconds * 1000) {
            const Culprit culprit = CulpritOf(StackOf(mMainThread));
            Lose(Rule::kTimeLimit,
                 "the run was ended after " + std::to_string(mLimits.runSeconds) + " seconds; the main thread was " +
                     InWords(culprit),
                 ModuleOf(culprit));
        }
    }

    // A person's time is not the library's.
    void LookForDialogOfPerson(const FlightRecord& record, ULONGLONG now) {
        if (!mLimits.hasPerson || record.stepBegan == 0 || now < mLookedAt + kLookMilliseconds) {
            return;
        }
        if (FindOpenDialog(mProcessId)) {
            mDialogSeenAt = now;
        }
        mLookedAt = GetTickCount64();
    }

    void OnStepLimit(const FlightRecord& record) {
        const std::string after = "after " + std::to_string(mLimits.stepSeconds) + " seconds";
        const auto dialog = FindOpenDialog(mProcessId);
        if (dialog && mLimits.hasPerson) {
            // Opened since the last look.
            mDialogSeenAt = GetTickCount64();
        } else if (dialog) {
            const Culprit culprit = CulpritOf(StackOf(dialog->thread));
            Lose(Rule::kModalDialog,
                 InWords(*dialog) + " waits for an answer that nobody gives, still " + after + "; it was opened " +
                     InWords(culprit),
                 ModuleOf(culprit));
        } else {
            const Culprit culprit = CulpritOf(StackOf(mMainThread));
            const bool isEntry = record.isPerEntry != 0 && record.entriesInside != 0;
            Lose(Rule::kHang,
                 (isEntry ? "the entry had not returned " : "the step had not ended ") + after +
                     "; the main thread is " + InWords(culprit),
                 ModuleOf(culprit));
        }
    }

    void NoteLeft(std::vector<Violation> left) {
        mEnd.findings.insert(mEnd.findings.end(), std::make_move_iterator(left.begin()),
                             std::make_move_iterator(left.end()));
    }

    // A process that ends is only gone when its debugger has seen it, or has let go of it.
    void EndAll() {
        TerminateProcess(mProcess, kEndedFromOutside);
        DebugActiveProcessStop(mProcessId);
        mJob.End();
    }

    // The run is over; the first finding is the one that counts.
    void Lose(Rule rule, const std::string& text, const std::string& module) {
        mIsLost = true;
        mLostAt = GetTickCount64();
        mEnd.findings.push_back({rule, 1, WhereItIs(mRecorder.Read()) + ": " + text, module});
        TerminateProcess(mProcess, kEndedFromOutside);
    }

    CallStack StackOf(DWORD thread) const {
        const auto found = mThreads.find(thread);
        return found == mThreads.end() ? CallStack{} : mStacks->ReadRunning(found->second);
    }

    Culprit CulpritOf(const CallStack& stack) const { return FindCulprit(mStacks->Describe(stack), mHost.program); }

    const HostProgram& mHost;
    const WatchLimits& mLimits;
    const FlightRecorder& mRecorder;
    const ULONGLONG mBegan;
    Job mJob;
    HANDLE mProcess = nullptr;
    DWORD mProcessId = 0;
    DWORD mMainThread = 0;
    std::optional<Modules> mModules;
    std::optional<StackReader> mStacks;
    std::optional<EndTraps> mTraps;
    std::map<DWORD, HANDLE> mThreads;  // those that run; the handles are Windows' own
    struct Fault {
        EXCEPTION_RECORD record;
        CallStack stack;
        DWORD thread;
    };
    std::optional<Fault> mLastFault;
    HostEnd mEnd;
    bool mIsReady = false;
    bool mIsLost = false;  // found guilty, and told to end
    bool mIsGone = false;
    ULONGLONG mLostAt = 0;
    ULONGLONG mDialogSeenAt = 0;  // one that a person answers
    ULONGLONG mLookedAt = 0;
};

}  // namespace

HostEnd RunAndWatch(const HostProgram& host, const WatchLimits& limits, const FlightRecorder& recorder) {
    // About one process in some thousands is killed by Wine itself while it starts, when the machine has much to do.
    // Nothing of a run is lost by another attempt: no library is loaded before the host itself begins.
    HostEnd end;
    for (int attempt = 0; attempt < kMostAttempts && !end.hasBegun; ++attempt) {
        end = Watch(host, limits, recorder).Run();
    }
    return end;
}

}  // namespace simhost
