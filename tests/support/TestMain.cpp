#include <gmock/gmock.h>

#include <cstdlib>

#include "support/CrashReport.h"
#include "support/Watchdog.h"

namespace {

// The environment variable takes another limit, 0 for work with a debugger.
int WatchdogSeconds() {
    const char* seconds = std::getenv("QUORVEL_WATCHDOG_SECONDS");
    return seconds != nullptr ? std::atoi(seconds) : QUORVEL_WATCHDOG_SECONDS;
}

}  // namespace

int main(int argc, char** argv) {
    ReportCrashes();
    testing::InitGoogleMock(&argc, argv);
    WatchTests(WatchdogSeconds());
    return RUN_ALL_TESTS();
}
