// A host whose suites are held, for tests of what asks the host about documents.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/base/SuiteOperations.h"
#include "support/host/TestHost.h"
#include "support/log/RecordingLogSink.h"

class HostTest : public testing::Test {
  protected:
    HostTest() {
        sBasicSuite = TestHost::Basic();
        host.HoldSuites();
    }
    // Suites that are acquired for a moment go back on every way out.
    void TearDown() override { EXPECT_EQ(host.HeldSuites(), (std::map<std::string, int>{})); }

    TestHost host;
};
