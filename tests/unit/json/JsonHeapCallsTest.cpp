// How often the heap is called for texts like those that the plug-in exchanges with the font manager: once for each
// value that is read, and once for the whole text that is written.
#include <gtest/gtest.h>

#include <cstddef>

#include "doubles/common/AllocationFaults.h"
#include "unit/json/JsonTestText.h"

namespace {

struct HeapCalls {
    std::size_t parsing;
    std::size_t deleting;
    std::size_t writing;
    bool operator==(const HeapCalls&) const = default;
};

HeapCalls HeapCallsFor(std::wstring_view text) {
    HeapCalls calls{};
    std::size_t before = AllocationsMade();
    std::unique_ptr<JsonValue> value = Parsed(text);
    calls.parsing = AllocationsMade() - before;
    before = AllocationsMade();
    const std::wstring written = WriteJson(value.get());
    calls.writing = AllocationsMade() - before;
    EXPECT_EQ(Rewritten(written), written);
    const std::ptrdiff_t held = LiveAllocations();
    value.reset();
    calls.deleting = static_cast<std::size_t>(held - LiveAllocations());
    return calls;
}

// `unit` so often, with commas between.
std::wstring Elements(std::wstring_view unit, std::size_t count) {
    return std::wstring(unit) + Repeated(L"," + std::wstring(unit), count - 1);
}

TEST(JsonHeapCallsTest, ForTheSettings) {
    EXPECT_EQ(HeapCallsFor(LR"({"DialogSuppression":1,"PickBestMatch":0})"), (HeapCalls{3, 3, 1}));
}

TEST(JsonHeapCallsTest, ForAMenuOf52Items) {
    const std::wstring item = LR"({"id":"fonts.set","title":"A set of fonts","enabled":true,"checked":false,"child":[)";
    const std::wstring group = item + Elements(item + L"]}", 12) + L"]}";
    EXPECT_EQ(HeapCallsFor(L"[" + Elements(group, 4) + L"]"), (HeapCalls{313, 313, 1}));
}

TEST(JsonHeapCallsTest, ForAReportOf2000FontsAnd2000Paths) {
    const std::wstring text =
        LR"({"DocumentFonts":[)" + Elements(LR"({"PostScriptName":"Garalde-SemiboldItalic"})", 2000) +
        LR"(],"LinkedDocuments":[)" + Elements(LR"("C:\\Users\\designer\\Links\\\u00fc.psd")", 2000) + L"]}";
    EXPECT_EQ(HeapCallsFor(text), (HeapCalls{6003, 6003, 1}));
}

TEST(JsonHeapCallsTest, NeitherEscapesNorOrderNorDepthNeedMore) {
    EXPECT_EQ(HeapCallsFor(LR"({"z\n\u0001":"\t\"\\\/\u0002","a long key \"with\" escapes\n":[[[{"b":1,"a":2}]]]})"),
              (HeapCalls{8, 8, 1}));
    EXPECT_EQ(HeapCallsFor(LR"([1.5,-0.00001234,1e300,null,true,false])"), (HeapCalls{7, 7, 1}));
}

// Room is made for an escape of each unit in its short form.
TEST(JsonHeapCallsTest, AStringOfControlUnitsGrowsWhileItIsWritten) {
    EXPECT_EQ(HeapCallsFor(L"\"" + Repeated(L"\\u0001", 1000) + L"\""), (HeapCalls{1, 1, 3}));
}

TEST(JsonHeapCallsTest, OfEqualKeysEachIsReadAndOneIsKept) {
    EXPECT_EQ(HeapCallsFor(LR"({"a":1,"a":2,"a":3})"), (HeapCalls{4, 2, 1}));
}

}  // namespace
