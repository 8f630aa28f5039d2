#include "support/watchdog/Watchdog.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "doubles/common/Thread.h"
#include "support/watchdog/EmergencyOutput.h"

namespace {

constexpr DWORD kLookIntervalMilliseconds = 100;

// What the watched thread is doing, and until when it may.
class TestClock {
  public:
    explicit TestClock(std::chrono::seconds limit) : mLimit(limit) {
        DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &mWatchedThread, 0, FALSE,
                        DUPLICATE_SAME_ACCESS);
        Restart("the start of the program");
    }

    void Restart(std::string what) {
        const std::lock_guard<Mutex> lock(mMutex);
        mWatched = std::move(what);
        mDeadline = std::chrono::steady_clock::now() + mLimit;
    }

    // Does not come back.
    void Watch() {
        for (;;) {
            // Wine answers a bad stack overflow by ending the thread alone; the process would live on for ever.
            const bool died = WaitForSingleObject(mWatchedThread, kLookIntervalMilliseconds) == WAIT_OBJECT_0;
            const std::lock_guard<Mutex> lock(mMutex);
            if (died) {
                PrintEmergency("watchdog: the thread of %s died, perhaps its stack overflowed\n", mWatched.c_str());
                TerminateProcess(GetCurrentProcess(), kWatchdogExitCode);
            }
            if (std::chrono::steady_clock::now() >= mDeadline) {
                PrintAndEnd();
            }
        }
    }

  private:
    void PrintAndEnd() {
        PrintEmergency("watchdog: %s took longer than %d seconds; stack (addr2line -Cfie <file> <address>):\n",
                       mWatched.c_str(), static_cast<int>(mLimit.count()));
        SuspendThread(mWatchedThread);
        CONTEXT context = {};
        context.ContextFlags = CONTEXT_FULL;
        if (GetThreadContext(mWatchedThread, &context)) {
            PrintStackTrace(context);
        }
        TerminateProcess(GetCurrentProcess(), kWatchdogExitCode);
    }

    const std::chrono::seconds mLimit;
    HANDLE mWatchedThread = nullptr;
    Mutex mMutex;
    std::string mWatched;
    std::chrono::steady_clock::time_point mDeadline;
};

class ClockRestarter : public testing::EmptyTestEventListener {
  public:
    explicit ClockRestarter(TestClock& clock) : mClock(clock) {}
    void OnTestStart(const testing::TestInfo& test) override { mClock.Restart(NameOf(test)); }
    void OnTestEnd(const testing::TestInfo& test) override { mClock.Restart("what follows " + NameOf(test)); }

  private:
    static std::string NameOf(const testing::TestInfo& test) {
        return std::string(test.test_suite_name()) + "." + test.name();
    }

    TestClock& mClock;
};

}  // namespace

void WatchTests(int seconds) {
    if (seconds <= 0) {
        return;
    }
    // Never freed: the watching thread needs it until the process is gone.
    TestClock* clock = std::make_unique<TestClock>(std::chrono::seconds(seconds)).release();
    Thread([clock] { clock->Watch(); }).Detach();
    testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<ClockRestarter>(*clock).release());
}
