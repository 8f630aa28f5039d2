// What is said of the JSON that a PluginCore gives.
#include "simhost/contract/TextChecks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace simhost::contract;

const std::string kSound = R"({"id": "a", "title": "A", "enabled": true, "checked": false, "child": []})";

std::string InWords(const std::vector<ShapeFault>& faults) {
    std::string words;
    for (const ShapeFault& fault : faults) {
        switch (fault.kind) {
            case ShapeFaultKind::kNoJson:
                words += "no JSON: ";
                break;
            case ShapeFaultKind::kMemberMissing:
                words += "missing: ";
                break;
            case ShapeFaultKind::kOtherKind:
                words += "kind: ";
                break;
        }
        words += fault.text + "; ";
    }
    return words;
}

TEST(TextChecks, MenusOfThePromisedShapeHaveNoFault) {
    EXPECT_EQ(InWords(FaultsOfMenus("[]")), "");
    EXPECT_EQ(InWords(FaultsOfMenus(kSound)), "");
    EXPECT_EQ(InWords(FaultsOfMenus("[" + kSound + ", " + kSound + "]")), "");
    EXPECT_EQ(InWords(FaultsOfMenus(
                  R"([{"id": "", "title": null, "enabled": true, "checked": true, "child": null, "own": 1}])")),
              "");
}

TEST(TextChecks, TheFirstFaultOfEachKindOfAMenuIsNamedWithItsPlace) {
    EXPECT_EQ(InWords(FaultsOfMenus("[1")), "no JSON: no JSON at byte 3; ");
    EXPECT_EQ(InWords(FaultsOfMenus("12")), "missing: neither an item nor an array of items; ");
    EXPECT_EQ(InWords(FaultsOfMenus("[" + kSound + ", 7]")), "kind: [1] is no object; ");
    EXPECT_EQ(InWords(FaultsOfMenus(R"({"id": 1})")),
              "kind: the item.id is not a text; missing: the item has no member \"title\"; ");
    EXPECT_EQ(InWords(FaultsOfMenus(R"([{"id": "a", "title": "A", "enabled": 1, "checked": false, "child": []}])")),
              "kind: [0].enabled is not true or false; ");
    EXPECT_EQ(InWords(FaultsOfMenus(
                  R"([{"id": "a", "title": "A", "enabled": true, "checked": false, "child": [{"id": "b"}]}])")),
              "missing: [0].child[0] has no member \"title\"; ");
}

TEST(TextChecks, SettingsAreAnObjectOfWholeNumbers) {
    EXPECT_EQ(InWords(FaultsOfSettings("{}")), "");
    EXPECT_EQ(InWords(FaultsOfSettings(R"({"DialogSuppression": 2, "PickBestMatch": -1, "own": "x"})")), "");
    EXPECT_EQ(InWords(FaultsOfSettings("[]")), "kind: no object; ");
    EXPECT_EQ(InWords(FaultsOfSettings(R"({"PickBestMatch": 0.5})")), "kind: PickBestMatch is no whole number; ");
    EXPECT_EQ(InWords(FaultsOfSettings("")), "no JSON: no JSON at byte 1; ");
    EXPECT_EQ(InWords(FaultsOfSettings("{\"DialogSuppression\":1e999}")), "no JSON: a number that no double holds; ");
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
