#include "dialogs/PluginCoreSettings.h"

#include <gtest/gtest.h>

#include "support/plugincore/FakePluginCore.h"
#include "support/plugincore/MissingPluginCore.h"

namespace {

class PluginCoreSettingsTest : public testing::Test {
  protected:
    PluginCoreSettingsTest() {
        LoadFakePluginCore();
        ThePluginCore().calls.Clear();
    }
    PluginCoreSettings Read(const std::string& json) {
        ThePluginCore().script["GetSettings"].text = json;
        return ReadPluginCoreSettings();
    }
};

TEST_F(PluginCoreSettingsTest, AreAskedForWithAZeroedBufferOf8192Bytes) {
    ReadPluginCoreSettings();
    EXPECT_EQ(ThePluginCore().calls.Calls(), std::vector<std::string>{"GetSettings(8192 zeros, 8192)"});
}

TEST_F(PluginCoreSettingsTest, AreTheNumbersOfTheObject) {
    const PluginCoreSettings settings = Read(R"({"PickBestMatch":1,"DialogSuppression":2,"Other":3})");
    EXPECT_EQ(settings.dialogSuppression, 2);
    EXPECT_EQ(settings.pickBestMatch, 1);
}

TEST_F(PluginCoreSettingsTest, AbsentSettingIs0) {
    EXPECT_EQ(Read(R"({"PickBestMatch":1})").dialogSuppression, 0);
    EXPECT_EQ(Read(R"({"DialogSuppression":1})").pickBestMatch, 0);
    EXPECT_EQ(Read("{}").pickBestMatch, 0);
}

TEST_F(PluginCoreSettingsTest, WhatIsNoObjectHasNoSettings) {
    for (const char* text : {"", "[1]", "2", "{\"DialogSuppression\":2", "{\"DialogSuppression\":2}}", "null"}) {
        EXPECT_EQ(Read(text).dialogSuppression, 0) << text;
    }
}

TEST_F(PluginCoreSettingsTest, SettingThatIsNoNumberIs0) {
    EXPECT_EQ(Read(R"({"DialogSuppression":"2"})").dialogSuppression, 0);
    EXPECT_EQ(Read(R"({"DialogSuppression":true})").dialogSuppression, 0);
    EXPECT_EQ(Read(R"({"DialogSuppression":[2]})").dialogSuppression, 0);
}

TEST_F(PluginCoreSettingsTest, FractionIsCutAndANumberThatDoesNotFitBecomesTheNearest) {
    EXPECT_EQ(Read(R"({"DialogSuppression":1.9})").dialogSuppression, 1);
    EXPECT_EQ(Read(R"({"DialogSuppression":-1})").dialogSuppression, -1);
    EXPECT_EQ(Read(R"({"DialogSuppression":1e300})").dialogSuppression, 2147483647);
    EXPECT_EQ(Read(R"({"DialogSuppression":-1e999})").dialogSuppression, -2147483647 - 1);
}

TEST_F(PluginCoreSettingsTest, SettingsThatArentDeliveredAre0) {
    ThePluginCore().script.Fail("GetSettings", 1);
    EXPECT_EQ(Read(R"({"DialogSuppression":2})").dialogSuppression, 0);
}

TEST(PluginCoreSettingsWithoutPluginCoreTest, Are0) {
    const MissingPluginCore missing;
    EXPECT_EQ(ReadPluginCoreSettings().dialogSuppression, 0);
    EXPECT_EQ(ReadPluginCoreSettings().pickBestMatch, 0);
}

}  // namespace
