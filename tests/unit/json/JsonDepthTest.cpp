// Nesting of one million levels. Done by recursion, each level would need a stack frame, and a frame is never smaller
// than its return address; that the stack has no room for even these, TheStackIsTooSmallForRecursion asks the system.
// Time that grows with the square of the depth would show too: no test is given the hours that it would take.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstddef>
#include <iterator>

#include "doubles/common/AllocationFaults.h"
#include "json/JsonValue.h"
#include "unit/json/JsonTestText.h"

namespace {

constexpr std::size_t kLevels = 1'000'000;

struct Shape {
    const char* name;
    const wchar_t* opening;
    const wchar_t* closing;
    std::size_t levelsInOne;
};

constexpr Shape kShapes[] = {{"Arrays", L"[", L"]", 1},
                             {"Objects", L"{\"a\":", L"}", 1},
                             {"Mixed", L"[{\"a\":", L"}]", 2},
                             {"ArraysWithSiblings", L"[1,[],", L",\"x\"]", 1},
                             {"ObjectsWithSiblings", L"{\"a\":1,\"b\":", L",\"c\":[2]}", 1}};

class JsonDepthTest : public testing::TestWithParam<Shape> {
  protected:
    std::wstring Opening() const { return Repeated(GetParam().opening, kLevels / GetParam().levelsInOne); }
    std::wstring Closing() const { return Repeated(GetParam().closing, kLevels / GetParam().levelsInOne); }
};

INSTANTIATE_TEST_SUITE_P(Nested, JsonDepthTest, testing::ValuesIn(kShapes),
                         [](const testing::TestParamInfo<Shape>& shape) { return shape.param.name; });

TEST(JsonDepthTest, TheStackIsTooSmallForRecursion) {
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    ASSERT_LT(low, high);
    EXPECT_LT(high - low, kLevels * sizeof(void*));
}

// The texts are megabytes: compared, but never printed.
TEST_P(JsonDepthTest, IsParsedWrittenAndFreed) {
    const std::wstring text = Opening() + L"null" + Closing();
    const std::ptrdiff_t before = LiveAllocations();
    std::unique_ptr<JsonValue> value = ParseJson(text);
    ASSERT_NE(value, nullptr);
    EXPECT_GE(LiveAllocations() - before, static_cast<std::ptrdiff_t>(kLevels));
    EXPECT_TRUE(WriteJson(value.get()) == text);
    value.reset();
    EXPECT_EQ(LiveAllocations(), before);
}

TEST_P(JsonDepthTest, FailsWhenItNeverEnds) {
    const std::wstring text = Opening();
    const std::ptrdiff_t before = LiveAllocations();
    EXPECT_TRUE(IsRefused(text));
    EXPECT_EQ(LiveAllocations(), before);
}

TEST_P(JsonDepthTest, FailsWhenOnlyTheOutermostBracketIsMissing) {
    std::wstring text = Opening() + L"null" + Closing();
    text.pop_back();
    const std::ptrdiff_t before = LiveAllocations();
    EXPECT_TRUE(IsRefused(text));
    EXPECT_EQ(LiveAllocations(), before);
}

TEST(JsonDepthTest, AValueBuiltByHandIsFreed) {
    const std::ptrdiff_t before = LiveAllocations();
    std::unique_ptr<JsonValue> value = JsonValue::MakeNull(L"a");
    for (std::size_t level = 0; level < kLevels / 2; ++level) {
        std::unique_ptr<JsonValue> array = JsonValue::MakeArray(L"a");
        array->Append(std::move(value));
        value = JsonValue::MakeObject();
        value->Append(std::move(array));
    }
    EXPECT_GE(LiveAllocations() - before, static_cast<std::ptrdiff_t>(kLevels));
    value.reset();
    EXPECT_EQ(LiveAllocations(), before);
}

TEST(JsonDepthTest, AMillionElementsSideBySideAreParsedWrittenAndFreed) {
    const std::wstring text = L"[" + Repeated(L"[0],", kLevels - 1) + L"[0]]";
    const std::ptrdiff_t before = LiveAllocations();
    std::unique_ptr<JsonValue> value = ParseJson(text);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(std::ranges::distance(value->AsArray()), std::ptrdiff_t{kLevels});
    EXPECT_TRUE(WriteJson(value.get()) == text);
    value.reset();
    EXPECT_EQ(LiveAllocations(), before);
}

}  // namespace
