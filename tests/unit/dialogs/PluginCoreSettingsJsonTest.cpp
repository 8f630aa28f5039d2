#include "dialogs/PluginCoreSettingsJson.h"

#include <gtest/gtest.h>

#include "json/JsonParser.h"

namespace {

PluginCoreSettings Read(const std::wstring& json) { return SettingsFromJson(ParseJson(json).get()); }

TEST(PluginCoreSettingsJsonTest, AreTheNumbersOfTheObject) {
    const PluginCoreSettings settings = Read(LR"({"PickBestMatch":1,"DialogSuppression":2,"Other":3})");
    EXPECT_EQ(settings.dialogSuppression, 2);
    EXPECT_EQ(settings.pickBestMatch, 1);
}

TEST(PluginCoreSettingsJsonTest, NullRootHasNone) {
    EXPECT_EQ(SettingsFromJson(nullptr).dialogSuppression, 0);
    EXPECT_EQ(SettingsFromJson(nullptr).pickBestMatch, 0);
}

TEST(PluginCoreSettingsJsonTest, RootThatIsNoObjectHasNone) {
    EXPECT_EQ(Read(L"[2]").dialogSuppression, 0);
    EXPECT_EQ(Read(L"2").pickBestMatch, 0);
}

TEST(PluginCoreSettingsJsonTest, NumbersAtTheLimitsAreTakenAsTheyAre) {
    EXPECT_EQ(Read(LR"({"PickBestMatch":2147483647})").pickBestMatch, 2147483647);
    EXPECT_EQ(Read(LR"({"PickBestMatch":2147483648})").pickBestMatch, 2147483647);
    EXPECT_EQ(Read(LR"({"PickBestMatch":2147483646.9})").pickBestMatch, 2147483646);
    EXPECT_EQ(Read(LR"({"PickBestMatch":-2147483648})").pickBestMatch, -2147483647 - 1);
    EXPECT_EQ(Read(LR"({"PickBestMatch":-2147483647.9})").pickBestMatch, -2147483647);
}

}  // namespace
