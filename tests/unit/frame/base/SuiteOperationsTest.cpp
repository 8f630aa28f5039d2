#include "frame/base/SuiteOperations.h"

#include <gtest/gtest.h>

#include "support/host/TestHost.h"
#include "support/log/RecordingLogSink.h"

namespace {

class SuiteOperationsTest : public testing::Test {
  protected:
    SuiteOperationsTest() { sBasicSuite = TestHost::Basic(); }
    TestHost host;
};

int CodeThrownBy(std::int32_t code) {
    try {
        ThrowIfError(code);
    } catch (std::int32_t thrown) {
        return thrown;
    }
    return 0;
}

TEST_F(SuiteOperationsTest, ZeroIsNotThrown) {
    EXPECT_NO_THROW(ThrowIfError(0));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(SuiteOperationsTest, NonZeroCodeIsLoggedAndThrownAsAnInteger) {
    EXPECT_EQ(CodeThrownBy(-1234), -1234);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{{0, "ERROR:  throwing -1234."}}));
}

TEST_F(SuiteOperationsTest, AcquiredSuiteIsStored) {
    const void* suite = nullptr;
    AcquireSuiteOrThrow("AI Notifier Suite", 4, &suite);
    EXPECT_EQ(suite, host.suites.Find("AI Notifier Suite")->slots.data());
    EXPECT_EQ(host.calls.Calls(), std::vector<std::string>{"AcquireSuite('AI Notifier Suite', 4)"});
    ReleaseSuiteIfHeld("AI Notifier Suite", 4, &suite);
}

TEST_F(SuiteOperationsTest, RefusedSuiteIsLoggedAndThrown) {
    host.RefuseSuite("AI Notifier Suite", 1397641038);
    const void* suite = nullptr;
    EXPECT_THROW(AcquireSuiteOrThrow("AI Notifier Suite", 4, &suite), std::int32_t);
    EXPECT_EQ(suite, nullptr);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{{0, "ERROR:  throwing 1397641038."}}));
}

TEST_F(SuiteOperationsTest, HeldSuiteIsReleasedOnceAndNulled) {
    const void* suite = nullptr;
    AcquireSuiteOrThrow("AI Notifier Suite", 4, &suite);
    host.calls.Clear();
    ReleaseSuiteIfHeld("AI Notifier Suite", 4, &suite);
    EXPECT_EQ(suite, nullptr);
    ReleaseSuiteIfHeld("AI Notifier Suite", 4, &suite);
    EXPECT_EQ(host.calls.Calls(), std::vector<std::string>{"ReleaseSuite('AI Notifier Suite', 4)"});
}

TEST_F(SuiteOperationsTest, MomentarySuiteIsReleasedWhenItsScopeEndsByAnException) {
    try {
        MomentarySuite<int> suite("AI Notifier Suite", 4);
        suite.AcquireOrThrow();
        throw 1;
    } catch (int) {
    }
    EXPECT_TRUE(host.HeldSuites().empty());
    EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('AI Notifier Suite', 4)");
}

TEST_F(SuiteOperationsTest, MomentarySuiteThatWasNeverAcquiredIsNotReleased) {
    { const MomentarySuite<int> suite("AI Notifier Suite", 4); }
    EXPECT_TRUE(host.calls.Calls().empty());
}

TEST_F(SuiteOperationsTest, NamesAreComparedByTheHost) {
    host.model.tokenAliases["a timer"] = "AI Timer";
    // Often enough to see every value by which the host says "equal".
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(TokensAreEqual("a timer", "AI Timer")) << i;
        EXPECT_FALSE(TokensAreEqual("a timer", "AI Menu")) << i;
    }
}

TEST_F(SuiteOperationsTest, NullNameIsEqualToNothing) {
    EXPECT_FALSE(TokensAreEqual(nullptr, "AI Timer"));
    EXPECT_FALSE(TokensAreEqual("AI Timer", nullptr));
    EXPECT_FALSE(TokensAreEqual(nullptr, nullptr));
}

}  // namespace
