// The runtime library's own conversion is the reference: it prints the same, with tables of 100 KB.
#include "json/JsonNumberText.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <random>
#include <string>

#include "unit/json/ScopedLocale.h"

namespace {

std::string Text(double number) {
    const JsonNumberText text(number);
    return {text.View().begin(), text.View().end()};
}

std::string Reference(double number) {
    char digits[64];
    const std::to_chars_result result =
        std::to_chars(std::begin(digits), std::end(digits), number, std::chars_format::general, 15);
    return {digits, result.ptr};
}

// Which number it was, hexadecimal, when the two differ.
testing::AssertionResult IsSame(double number) {
    if (Text(number) == Reference(number)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << std::hexfloat << number << ": " << Text(number) << ", not "
                                       << Reference(number);
}

constexpr std::uint64_t kMantissaBits = (1ULL << 52) - 1;

// Every exponent, with mantissas that have one bit, none, all, and any.
TEST(JsonNumberTextTest, EveryExponentIsPrintedAsByTheLibrary) {
    std::mt19937_64 random(20261122);
    for (std::uint64_t exponent = 0; exponent < 2047; ++exponent) {
        for (const std::uint64_t mantissa : {std::uint64_t{0}, std::uint64_t{1}, kMantissaBits, kMantissaBits - 1,
                                             std::uint64_t{1} << (exponent % 52), random() & kMantissaBits}) {
            const auto number = std::bit_cast<double>(exponent << 52 | mantissa);
            ASSERT_TRUE(IsSame(number));
            ASSERT_TRUE(IsSame(-number));
        }
    }
}

TEST(JsonNumberTextTest, RandomBitsArePrintedAsByTheLibrary) {
    std::mt19937_64 random(20261122);
    for (int i = 0; i < 100'000; ++i) {
        const auto number = std::bit_cast<double>(random());
        if (std::isfinite(number)) {
            ASSERT_TRUE(IsSame(number));
        }
    }
}

// What people write: a few digits with a point somewhere.
TEST(JsonNumberTextTest, ShortDecimalsArePrintedAsByTheLibrary) {
    std::mt19937_64 random(20261122);
    for (int i = 0; i < 100'000; ++i) {
        const auto digits = static_cast<double>(random() % 1'000'000'000);
        ASSERT_TRUE(IsSame(digits / std::pow(10.0, static_cast<double>(random() % 23))));
    }
}

// Sixteen and seventeen digits of which the last are exactly a half of the fifteenth, and their neighbours.
TEST(JsonNumberTextTest, TiesAndTheirNeighboursArePrintedAsByTheLibrary) {
    std::mt19937_64 random(20261122);
    for (int i = 0; i < 100'000; ++i) {
        const std::uint64_t fifteen = 100'000'000'000'000 + random() % 800'000'000'000'000;
        const double ties[] = {static_cast<double>(fifteen * 10 + 5), static_cast<double>(fifteen) + 0.5,
                               static_cast<double>(fifteen / 100 * 10 + 5) / 4};
        for (const double tie : ties) {
            ASSERT_TRUE(IsSame(tie));
            ASSERT_TRUE(IsSame(std::nextafter(tie, 0)));
            ASSERT_TRUE(IsSame(std::nextafter(tie, 1e300)));
        }
    }
}

// Where a digit more or less changes the form.
TEST(JsonNumberTextTest, PowersOfTenAndTheirNeighboursArePrintedAsByTheLibrary) {
    for (int exponent = -323; exponent <= 307; ++exponent) {
        const double power = std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr);
        for (int steps = 0; steps < 9; ++steps) {
            double below = power * steps;
            double above = below;
            for (int i = 0; i < 4; ++i) {
                ASSERT_TRUE(IsSame(below));
                ASSERT_TRUE(IsSame(above));
                below = std::nextafter(below, -1e308);
                above = std::nextafter(above, 1e308);
            }
        }
    }
}

TEST(JsonNumberTextTest, TheLongestHaveTheSizeThatIsSaid) {
    EXPECT_EQ(Text(-1.23456789012345e-300), "-1.23456789012345e-300");
    EXPECT_EQ(Text(-1.23456789012345e-300).size(), JsonNumberText::kMaxSize);
    EXPECT_EQ(Text(std::numeric_limits<double>::lowest()).size(), JsonNumberText::kMaxSize);
    EXPECT_EQ(Text(-0.000123456789012345), "-0.000123456789012345");
}

TEST(JsonNumberTextTest, TheLocaleChangesNothing) {
    const ScopedLocale german("German_Germany.1252");
    EXPECT_EQ(Text(-1234567.5), "-1234567.5");
    EXPECT_EQ(Text(1.5e-7), "1.5e-07");
}

}  // namespace
