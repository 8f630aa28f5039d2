// What is said of the JSON that a PluginCore gives.
#include "simhost/contract/TextChecks.h"

#include <gtest/gtest.h>

namespace {

using namespace simhost::contract;

const std::string kSound = R"({"id": "a", "title": "A", "enabled": true, "checked": false, "child": []})";

std::string FaultInWords(const std::optional<ShapeFault>& fault) {
    return !fault ? "" : (fault->isJson ? "shape: " : "no JSON: ") + fault->text;
}

TEST(TextChecks, MenusOfThePromisedShapeHaveNoFault) {
    EXPECT_EQ(FaultInWords(FaultOfMenus("[]")), "");
    EXPECT_EQ(FaultInWords(FaultOfMenus(kSound)), "");
    EXPECT_EQ(FaultInWords(FaultOfMenus("[" + kSound + ", " + kSound + "]")), "");
    EXPECT_EQ(FaultInWords(FaultOfMenus(
                  R"([{"id": "", "title": null, "enabled": true, "checked": true, "child": null, "own": 1}])")),
              "");
}

TEST(TextChecks, TheFirstFaultOfAMenuIsNamedWithItsPlace) {
    EXPECT_EQ(FaultInWords(FaultOfMenus("[1")), "no JSON: no JSON at byte 3");
    EXPECT_EQ(FaultInWords(FaultOfMenus("12")), "shape: neither an item nor an array of items");
    EXPECT_EQ(FaultInWords(FaultOfMenus("[" + kSound + ", 7]")), "shape: [1] is no object");
    EXPECT_EQ(FaultInWords(FaultOfMenus(R"({"id": 1})")), "shape: the item.id is not a text");
    EXPECT_EQ(FaultInWords(FaultOfMenus(R"([{"id": "a", "title": "A", "enabled": 1, "checked": false, "child": []}])")),
              "shape: [0].enabled is not true or false");
    EXPECT_EQ(FaultInWords(FaultOfMenus(
                  R"([{"id": "a", "title": "A", "enabled": true, "checked": false, "child": [{"id": "b"}]}])")),
              "shape: [0].child[0] has no member \"title\"");
}

TEST(TextChecks, SettingsAreAnObjectOfWholeNumbers) {
    EXPECT_EQ(FaultInWords(FaultOfSettings("{}")), "");
    EXPECT_EQ(FaultInWords(FaultOfSettings(R"({"DialogSuppression": 2, "PickBestMatch": -1, "own": "x"})")), "");
    EXPECT_EQ(FaultInWords(FaultOfSettings("[]")), "shape: no object");
    EXPECT_EQ(FaultInWords(FaultOfSettings(R"({"PickBestMatch": 0.5})")), "shape: PickBestMatch is no whole number");
    EXPECT_EQ(FaultInWords(FaultOfSettings("")), "no JSON: no JSON at byte 1");
}

TEST(TextChecks, BytesAreShownWhereTheyAreNoText) {
    EXPECT_TRUE(
        IsUtf8("Gr\xC3\xB6\xC3\x9F"
               "e"));
    EXPECT_FALSE(
        IsUtf8("Gr\xF6\xDF"
               "e"));
    EXPECT_EQ(Printable("Gr\xC3\xB6\xC3\x9F"
                        "e\n"),
              "\"Gr\xC3\xB6\xC3\x9F"
              "e<0A>\"");
    EXPECT_EQ(Printable("Gr\xF6\xDF"
                        "e"),
              "\"Gr<F6><DF>e\"");
    EXPECT_EQ(Printable(std::string(100, 'x')), "\"" + std::string(60, 'x') + "...\"");
}

}  // namespace
