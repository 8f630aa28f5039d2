#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "support/isolation/BeforeEachTest.h"
#include "support/isolation/LineCounters.h"
#include "support/main/RegisteredSuites.h"
#include "support/watchdog/CrashReport.h"
#include "support/watchdog/Watchdog.h"

namespace {

// The environment variable takes another limit, 0 for work with a debugger.
int WatchdogSeconds() {
    const char* seconds = std::getenv("QUORVEL_WATCHDOG_SECONDS");
    return seconds != nullptr ? std::atoi(seconds) : QUORVEL_WATCHDOG_SECONDS;
}

// "Instance/Suite" for parameterised tests, "Suite/0" for typed ones.
std::string_view SuiteName(std::string_view name) {
    if (const std::size_t slash = name.find('/'); slash != std::string_view::npos) {
        const std::string_view behind = name.substr(slash + 1);
        const bool isTyped = behind.find_first_not_of("0123456789") == std::string_view::npos;
        return isTyped ? name.substr(0, slash) : behind;
    }
    return name;
}

// A suite that the build has not seen is one that ctest never runs.
bool AllSuitesAreRegistered() {
    const testing::UnitTest& program = *testing::UnitTest::GetInstance();
    bool all = true;
    for (int i = 0; i < program.total_test_suite_count(); ++i) {
        const std::string_view suite = SuiteName(program.GetTestSuite(i)->name());
        if (std::find(kRegisteredSuites.begin(), kRegisteredSuites.end(), suite) == kRegisteredSuites.end()) {
            std::fprintf(stderr, "The build did not find the suite %s in the sources; see cmake/TestSuites.cmake\n",
                         std::string(suite).c_str());
            all = false;
        }
    }
    return all;
}

}  // namespace

int main(int argc, char** argv) {
    ReportCrashes();
    testing::InitGoogleMock(&argc, argv);
    if (!AllSuitesAreRegistered()) {
        return 1;
    }
    WatchTests(WatchdogSeconds());
    IsolateTests();
    const int result = RUN_ALL_TESTS();
    // Without destructors of static objects: those of the plug-in's variables would run once for each test that made
    // the object anew.
    std::fflush(nullptr);
    SaveLineCounters();
    std::_Exit(result);
}
