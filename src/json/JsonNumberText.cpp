#include "json/JsonNumberText.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {

constexpr int kMaxDigits = 15;
constexpr std::uint64_t kLimit = 1'000'000'000'000'000;  // the smallest number with more digits

// A whole number in limbs of nine decimal digits, the lowest first.
class WholeNumber {
  public:
    explicit WholeNumber(std::uint64_t number) noexcept {
        for (; number != 0; number /= kBase) {
            mLimbs[mCount++] = static_cast<std::uint32_t>(number % kBase);
        }
    }

    // By factor^times.
    void Multiply(std::uint32_t factor, int times) noexcept {
        while (times > 0) {
            std::uint64_t power = 1;
            for (; times > 0 && power * factor <= std::numeric_limits<std::uint32_t>::max(); --times) {
                power *= factor;
            }
            MultiplyOnce(power);
        }
    }

    int CountOfDigits() const noexcept {
        int count = (mCount - 1) * kLimbDigits;
        for (std::uint32_t rest = mLimbs[mCount - 1]; rest != 0; rest /= 10) {
            ++count;
        }
        return count;
    }

    // Place 0 is that of the ones. Behind them everything is zero.
    int Digit(int place) const noexcept {
        if (place < 0) {
            return 0;
        }
        std::uint32_t limb = mLimbs[place / kLimbDigits];
        for (int i = place % kLimbDigits; i > 0; --i) {
            limb /= 10;
        }
        return static_cast<int>(limb % 10);
    }

    bool HasOnlyZerosBelow(int place) const noexcept {
        while (place > 0 && Digit(place - 1) == 0) {
            --place;
        }
        return place <= 0;
    }

  private:
    static constexpr std::uint64_t kBase = 1'000'000'000;
    static constexpr int kLimbDigits = 9;

    void MultiplyOnce(std::uint64_t factor) noexcept {
        std::uint64_t carry = 0;
        for (int i = 0; i < mCount; ++i) {
            carry += mLimbs[i] * factor;
            mLimbs[i] = static_cast<std::uint32_t>(carry % kBase);
            carry /= kBase;
        }
        for (; carry != 0; carry /= kBase) {
            mLimbs[mCount++] = static_cast<std::uint32_t>(carry % kBase);
        }
    }

    // The most digits, 767, are those of the largest subnormal number's 52 bits times 5^1074.
    std::uint32_t mLimbs[86];
    int mCount = 0;
};

// digits * 10^(exponent - 14): 15 digits, the first of which is not zero and has that exponent.
struct Rounded {
    std::uint64_t digits;
    int exponent;
};

// Every double is a whole number times a power of two, and with a negative power, 2^-n = 5^n / 10^n, a whole number
// with a decimal point in it: so its digits are known exactly. No tables of powers are needed.
Rounded RoundToDigits(double magnitude) noexcept {
    int exponent = 0;
    const auto mantissa = static_cast<std::uint64_t>(std::ldexp(std::frexp(magnitude, &exponent), 53));
    const int zeroBits = std::countr_zero(mantissa);
    exponent += zeroBits - 53;
    WholeNumber number(mantissa >> zeroBits);
    number.Multiply(exponent < 0 ? 5 : 2, std::abs(exponent));

    const int count = number.CountOfDigits();
    Rounded rounded{0, count - 1 + std::min(exponent, 0)};
    for (int i = 1; i <= kMaxDigits; ++i) {
        rounded.digits = rounded.digits * 10 + static_cast<std::uint64_t>(number.Digit(count - i));
    }
    const int next = count - kMaxDigits - 1;
    const bool isTie = number.Digit(next) == 5 && number.HasOnlyZerosBelow(next);
    if (isTie ? rounded.digits % 2 == 1 : number.Digit(next) >= 5) {
        ++rounded.digits;
    }
    if (rounded.digits == kLimit) {
        return {kLimit / 10, rounded.exponent + 1};
    }
    return rounded;
}

}  // namespace

JsonNumberText::JsonNumberText(double number) noexcept {
    if (std::signbit(number)) {
        Add(L'-');
    }
    const double magnitude = std::abs(number);
    if (magnitude < static_cast<double>(kLimit) && magnitude == std::trunc(magnitude)) {
        AddWhole(static_cast<std::uint64_t>(magnitude));
        return;
    }
    const auto [digits, exponent] = RoundToDigits(magnitude);
    if (exponent < -4 || exponent >= kMaxDigits) {
        AddDigits(digits, 1);
        AddExponent(exponent);
    } else {
        AddDigits(digits, exponent + 1);
    }
}

// The most usual numbers: all of their digits are printed, and known at once.
void JsonNumberText::AddWhole(std::uint64_t number) noexcept {
    std::uint64_t place = 1;
    while (place <= number / 10) {
        place *= 10;
    }
    for (; place != 0; place /= 10) {
        AddDigit(number / place % 10);
    }
}

// Without the zeros at their end. Where no digit stands before the point, zeros do.
void JsonNumberText::AddDigits(std::uint64_t digits, int beforePoint) noexcept {
    if (beforePoint <= 0) {
        Add(L'0');
        Add(L'.');
    }
    for (int zeros = beforePoint; zeros < 0; ++zeros) {
        Add(L'0');
    }
    std::uint64_t place = kLimit / 10;
    for (int written = 0; digits != 0 || written < beforePoint; ++written) {
        if (written > 0 && written == beforePoint) {
            Add(L'.');
        }
        AddDigit(digits / place);
        digits %= place;
        place /= 10;
    }
}

void JsonNumberText::AddExponent(int exponent) noexcept {
    Add(L'e');
    Add(exponent < 0 ? L'-' : L'+');
    const auto magnitude = static_cast<std::uint64_t>(std::abs(exponent));
    if (magnitude >= 100) {
        AddDigit(magnitude / 100);
    }
    AddDigit(magnitude / 10 % 10);
    AddDigit(magnitude % 10);
}
