#include "plugincore/EntryPoint.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "doubles/common/ForeignException.h"

namespace {

std::vector<std::string> sCalls;

std::int32_t Answer(const char* text, char* buffer, std::uint64_t* size) {
    sCalls.push_back(std::string(text) + ", " + std::to_string(*size));
    buffer[0] = 'r';
    *size = 0xFFFFFFFFFFull;
    return 0x12000000;
}

std::int32_t AnswerNegative() { return -2; }

std::int32_t ThrowForeign() {
    ThrowLikeAnotherCompiler();
    return 0;
}

template <class Function>
FARPROC Address(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

static_assert(sizeof(EntryPoint<std::int32_t()>) == sizeof(void*));

TEST(EntryPoint, IsNullUntilItIsBound) {
    EntryPoint<std::int32_t()> entry;
    EXPECT_TRUE(entry.IsNull());
    entry.Bind(Address(AnswerNegative));
    EXPECT_FALSE(entry.IsNull());
    entry.Bind(nullptr);
    EXPECT_TRUE(entry.IsNull());
}

TEST(EntryPoint, AnswersNotFoundAndWritesNothingWhenItIsCalledWithoutBeingBound) {
    EntryPoint<std::int32_t(const char*, char*, std::uint64_t*)> entry;
    char buffer = 'b';
    std::uint64_t size = 1;
    EXPECT_EQ(entry("text", &buffer, &size), kLookupNotFound);
    entry.Bind(Address(Answer));
    entry.Bind(nullptr);
    EXPECT_EQ(entry("text", &buffer, &size), kLookupNotFound);
    EXPECT_EQ(buffer, 'b');
    EXPECT_EQ(size, 1u);
}

TEST(EntryPoint, HandsArgumentsOnAndReturnsTheResult) {
    sCalls.clear();
    EntryPoint<std::int32_t(const char*, char*, std::uint64_t*)> entry;
    entry.Bind(Address(Answer));
    char buffer = 0;
    std::uint64_t size = 0x123456789ull;
    EXPECT_EQ(entry("text", &buffer, &size), 0x12000000);
    EXPECT_EQ(sCalls, std::vector<std::string>{"text, 4886718345"});
    EXPECT_EQ(buffer, 'r');
    EXPECT_EQ(size, 0xFFFFFFFFFFull);
}

TEST(EntryPoint, ReturnsANegativeResult) {
    EntryPoint<std::int32_t()> entry;
    entry.Bind(Address(AnswerNegative));
    EXPECT_EQ(entry(), -2);
}

TEST(EntryPoint, ForeignExceptionBecomesOneThatUnwindsTheCaller) {
    EntryPoint<std::int32_t()> entry;
    entry.Bind(Address(ThrowForeign));
    struct Frame {
        bool& unwound;
        ~Frame() { unwound = true; }
    };
    bool unwound = false;
    const auto call = [&] {
        const Frame frame{unwound};
        entry();
    };
    EXPECT_THROW(call(), ForeignException);
    EXPECT_TRUE(unwound);
}

}  // namespace
