#include "support/isolation/BeforeEachTest.h"

#include <gtest/gtest.h>

#include <string>

#include "support/PluginInfo.h"

namespace {

int sResets = 0;
int sTestsBegun = 0;

const BeforeEachTest kCount([] { ++sResets; });

class BeforeEachTestTest : public testing::Test {
  protected:
    // Before each test of the program, in whichever order: not only those of this suite.
    BeforeEachTestTest() { ++sTestsBegun; }
};

// Each of the two finds what the other has left behind put back, whichever runs first.
void ExpectOriginalAndChange() {
    EXPECT_EQ(std::string(sPluginIdentifier), "com.quorvel.AutoActivationPlugin.AI20");
    EXPECT_EQ(PluginInfo::GetIdentityText(), "");
    sPluginIdentifier = "changed by a test";
    PluginInfo::Initialize("initialised by a test");
}

TEST_F(BeforeEachTestTest, VariablesOfThePluginAreAsAtTheStartOfTheProgramForOneTest) { ExpectOriginalAndChange(); }

TEST_F(BeforeEachTestTest, VariablesOfThePluginAreAsAtTheStartOfTheProgramForAnotherTest) { ExpectOriginalAndChange(); }

TEST_F(BeforeEachTestTest, RegisteredFunctionsHaveRunWhenTheFixtureIsMade) { EXPECT_GE(sResets, sTestsBegun); }

}  // namespace
