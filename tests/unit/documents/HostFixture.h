// A fake host whose suites are held, for tests of what asks the host about documents.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/base/SuiteOperations.h"
#include "support/fakes/FakeHost.h"
#include "support/log/RecordingLogSink.h"

class HostTest : public testing::Test {
  protected:
    HostTest() {
        sBasicSuite = host.Basic();
        host.HoldSuites();
    }
    // Whatever a test does, nothing of the host's may stay out.
    void TearDown() override {
        EXPECT_EQ(host.LiveStrings(), 0);
        EXPECT_EQ(host.LivePaths(), 0);
        EXPECT_EQ(host.LiveReferences(), 0);
        EXPECT_EQ(host.LiveHandles(), 0);
    }

    FakeHost host;
};
