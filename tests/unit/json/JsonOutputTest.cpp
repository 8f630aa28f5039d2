#include "json/JsonOutput.h"

#include <gtest/gtest.h>

#include <limits>

#include "doubles/common/AllocationFaults.h"
#include "json/JsonParser.h"
#include "json/JsonWriter.h"

namespace {

std::wstring Written(std::wstring_view string) {
    JsonOutput output(0);
    output.AddString(string);
    return output.TakeText();
}

TEST(JsonOutputTest, WritesWhatItIsToldInItsOrder) {
    JsonOutput output(0);
    output.AddUnit(L'[');
    output.AddKeyword(L"true");
    output.AddUnit(L',');
    output.AddNumber(-0.25);
    output.AddUnit(L',');
    output.AddNumber(std::numeric_limits<double>::infinity());
    output.AddKeyword(L"");
    output.AddUnit(L',');
    output.AddString(L"a\"b");
    output.AddUnit(L']');
    EXPECT_EQ(output.TakeText(), LR"([true,-0.25,null,"a\"b"])");
}

TEST(JsonOutputTest, NothingIsTheEmptyText) { EXPECT_EQ(JsonOutput(10).TakeText(), L""); }

// As the writer of trees does.
TEST(JsonOutputTest, EscapesEachUnitThatNeedsIt) {
    for (unsigned code = 0; code < 0x300; ++code) {
        const std::wstring units = {L'<', static_cast<wchar_t>(code), L'>'};
        const std::wstring written = Written(units);
        EXPECT_EQ(WriteJson(ParseJson(written).get()), written) << code;
        const bool needsIt = code < 32 || code == '"' || code == '/' || code == '\\';
        EXPECT_EQ(written.size() == units.size() + 2, !needsIt) << code;
    }
    EXPECT_EQ(Written(L"\x01\x1F\b\f\n\r\t"), LR"("\u0001\u001F\b\f\n\r\t")");
}

// Whatever is gathered before it is written to the text.
TEST(JsonOutputTest, TextsOfEveryLengthComeOutWhole) {
    for (std::size_t size = 0; size < 1700; ++size) {
        const std::wstring keyword(size, L'x');
        const std::wstring string(size, L'\x01');
        JsonOutput output(0);
        output.AddUnit(L'<');
        output.AddKeyword(keyword);
        output.AddUnit(L'|');
        output.AddString(keyword);
        output.AddString(string);
        output.AddUnit(L'>');
        std::wstring escaped;
        for (std::size_t i = 0; i < size; ++i) {
            escaped += LR"(\u0001)";
        }
        ASSERT_EQ(output.TakeText(), L"<" + keyword + L"|\"" + keyword + L"\"\"" + escaped + L"\">") << size;
    }
}

TEST(JsonOutputTest, TakesOneBlockForATextOfTheSizeThatItWasTold) {
    const std::wstring string(5000, L'/');
    const std::size_t before = AllocationsMade();
    JsonOutput output(10002);
    output.AddString(string);
    const std::wstring text = output.TakeText();
    EXPECT_EQ(AllocationsMade() - before, 1u);
    EXPECT_EQ(text.size(), 10002u);
}

}  // namespace
