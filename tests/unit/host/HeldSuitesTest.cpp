#include "host/HeldSuites.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "host/BasicSuite.h"
#include "support/Errors.h"

namespace {

static_assert(sizeof(HeldSuite<SPBasicSuite>) == 8);
static_assert(!std::is_copy_constructible_v<HeldSuite<SPBasicSuite>>);

TEST(HeldSuite, HoldsNothingAtFirst) {
    HeldSuite<SPBasicSuite> suite;
    EXPECT_FALSE(suite);
    EXPECT_EQ(*suite.Target(), nullptr);
}

TEST(HeldSuite, UseOfASuiteThatIsNotHeldThrows) {
    const HeldSuite<SPBasicSuite> suite;
    try {
        suite->IsEqual("a", "b");
        FAIL() << "nothing was thrown";
    } catch (const SuiteNotHeld& error) {
        EXPECT_STREQ(error.what(), "a host suite is not held");
    }
}

TEST(HeldSuite, CallsTheTableThatTheHostHasWritten) {
    SPBasicSuite table{};
    table.IsEqual = [](const char*, const char*) -> SPBoolean { return 12; };
    HeldSuite<SPBasicSuite> suite;
    *suite.Target() = &table;
    EXPECT_TRUE(suite);
    EXPECT_EQ(suite->IsEqual("a", "b"), 12);
}

TEST(HeldSuite, IsNotHeldAgainOnceItIsNull) {
    SPBasicSuite table{};
    HeldSuite<SPBasicSuite> suite;
    *suite.Target() = &table;
    *suite.Target() = nullptr;
    EXPECT_FALSE(suite);
    EXPECT_THROW(suite->IsEqual("a", "b"), SuiteNotHeld);
}

TEST(HeldSuites, NoneIsHeldAtLoad) {
#define QUORVEL_EXPECT_NOT_HELD(word, version, type) EXPECT_FALSE(ATE::s##word##Suite) << #word;
    QUORVEL_TEXT_ENGINE_SUITES(QUORVEL_EXPECT_NOT_HELD)
#undef QUORVEL_EXPECT_NOT_HELD
    EXPECT_FALSE(sFilePathSuite);
    EXPECT_FALSE(sUserSuite);
    EXPECT_FALSE(sFontSuite);
    EXPECT_FALSE(sNotifierSuite);
    EXPECT_FALSE(sMatchingArt);
    EXPECT_FALSE(sPlacedSuite);
    EXPECT_FALSE(sTextFrameSuite);
    EXPECT_FALSE(sBlocksSuite);
    EXPECT_FALSE(sMdMemorySuite);
    EXPECT_FALSE(sUnicodeStringSuite);
    EXPECT_FALSE(sDocumentSuite);
}

TEST(HeldSuites, FontSuitesOfHostAndTextEngineAreTwo) {
    EXPECT_NE(static_cast<const void*>(sFontSuite.Target()), static_cast<const void*>(ATE::sFontSuite.Target()));
}

}  // namespace
