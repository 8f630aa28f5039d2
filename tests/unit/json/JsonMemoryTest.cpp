// Nothing leaks: neither when a text is refused nor when memory runs out, wherever that happens.
#include <gtest/gtest.h>

#include <functional>
#include <new>

#include "doubles/common/AllocationFaults.h"
#include "unit/json/JsonTestText.h"

namespace {

// Everything that takes memory: long and short strings, escapes, nesting, siblings and a repeated key.
constexpr std::wstring_view kText =
    LR"([{"DocumentFonts":[{"PostScriptName":"ABeautifulTypeface-BoldCondensedItalic"},{"PostScriptName":"Mono"}],)"
    LR"("LinkedDocuments":["C:\\Users\\someone\\Pictures\\a rather long name.jpg","\u00e9\n"],"empty":{},"none":[]},)"
    LR"({"a key that is too long to lie inside the string":1.5e3,"a key that is too long to lie inside the string":)"
    LR"([true,false,null,-0.25,[[[["deep"]]]],{"x":{"y":{"z":"a text that is too long to lie inside"}}}]}])";

constexpr std::wstring_view kTextWritten =
    LR"([{"DocumentFonts":[{"PostScriptName":"ABeautifulTypeface-BoldCondensedItalic"},{"PostScriptName":"Mono"}],)"
    L"\"LinkedDocuments\":[\"C:\\\\Users\\\\someone\\\\Pictures\\\\a rather long name.jpg\",\"\x00E9\\n\"],"
    LR"("empty":{},"none":[]},{"a key that is too long to lie inside the string":[true,false,null,-0.25,)"
    LR"([[[["deep"]]]],{"x":{"y":{"z":"a text that is too long to lie inside"}}}]}])";

// Runs `work` with its first allocation failing, then with its second, and so on, until one run needs no more. Each
// run must either throw std::bad_alloc or give `expected`, and leave nothing behind. Returns the failures it saw.
std::size_t FailuresSurvived(const std::function<std::wstring()>& work, std::wstring_view expected) {
    // The runtime takes a block for the first exception of a thread and keeps it.
    try {
        throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
    }
    for (std::size_t failing = 1;; ++failing) {
        const std::ptrdiff_t before = LiveAllocations();
        bool threw = false;
        bool asExpected = false;
        bool happened = false;
        {
            const FailingAllocation failure(failing);
            try {
                asExpected = work() == expected;
            } catch (const std::bad_alloc&) {
                threw = true;
            }
            happened = failure.HasHappened();
        }
        EXPECT_EQ(LiveAllocations(), before) << "allocation " << failing;
        EXPECT_EQ(threw, happened) << "allocation " << failing;
        EXPECT_TRUE(threw || asExpected) << "allocation " << failing;
        if (!happened) return failing - 1;
    }
}

TEST(JsonMemoryTest, TheTextOfTheseTestsIsValid) { EXPECT_EQ(Rewritten(kText), kTextWritten); }

TEST(JsonMemoryTest, RunningOutWhileParsingLeaksNothing) {
    const auto parse = [] { return ParseJson(kText) ? std::wstring(L"parsed") : std::wstring(); };
    EXPECT_EQ(FailuresSurvived(parse, L"parsed"), 28u);  // one for each value
}

TEST(JsonMemoryTest, RunningOutWhileWritingLeaksNothing) {
    const std::unique_ptr<JsonValue> value = Parsed(kText);
    EXPECT_EQ(FailuresSurvived([&value] { return WriteJson(value.get()); }, kTextWritten), 1u);
    EXPECT_EQ(WriteJson(value.get()), kTextWritten);
}

TEST(JsonMemoryTest, RunningOutWhileATextGrowsLeaksNothing) {
    const std::wstring text = L"\"" + Repeated(L"\\u0001", 1000) + L"\"";
    const std::unique_ptr<JsonValue> value = Parsed(text);
    EXPECT_EQ(FailuresSurvived([&value] { return WriteJson(value.get()); }, text), 3u);
}

TEST(JsonMemoryTest, RunningOutWhileParsingNarrowTextLeaksNothing) {
    const std::string text = R"({"a key that is too long to lie inside the string": ["x", [1, {}]]})";
    const auto parse = [&text] { return ParseNarrowJson(text) ? std::wstring(L"parsed") : std::wstring(); };
    EXPECT_EQ(FailuresSurvived(parse, L"parsed"), 7u);  // one for the wide text
}

TEST(JsonMemoryTest, EveryTextThatEndsTooEarlyIsRefusedAndLeaksNothing) {
    for (std::size_t length = 0; length < kText.size(); ++length) {
        const std::ptrdiff_t before = LiveAllocations();
        const bool refused = IsRefused(kText.substr(0, length));
        ASSERT_EQ(LiveAllocations(), before) << length;
        ASSERT_TRUE(refused) << length;
    }
}

TEST(JsonMemoryTest, ATextWithAStrayQuoteAnywhereIsRefusedAndLeaksNothing) {
    for (std::size_t position = 0; position <= kText.size(); ++position) {
        if (position > 0 && kText[position - 1] == L'\\') continue;  // it would be part of an escape
        std::wstring text(kText);
        text.insert(position, 1, L'"');
        const std::ptrdiff_t before = LiveAllocations();
        const bool refused = IsRefused(text);
        ASSERT_EQ(LiveAllocations(), before) << position;
        ASSERT_TRUE(refused) << position;
    }
}

}  // namespace
