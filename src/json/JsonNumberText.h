// Numbers as they stand in a JSON text.
// Thread: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// A finite number with up to 15 significant digits, in the form of "%.15g" and of the "C" locale, whatever locale is
// set. Correctly rounded; a tie goes to the even digit.
class JsonNumberText {
  public:
    // The longest has a sign, 15 digits, a point and a three-digit exponent with its sign, or three zeros instead of
    // it.
    static constexpr std::size_t kMaxSize = 22;

    explicit JsonNumberText(double number) noexcept;

    std::wstring_view View() const noexcept { return {mUnits, mSize}; }

  private:
    void Add(wchar_t unit) noexcept { mUnits[mSize++] = unit; }
    void AddDigit(std::uint64_t digit) noexcept { Add(static_cast<wchar_t>(L'0' + digit)); }
    void AddWhole(std::uint64_t number) noexcept;
    void AddDigits(std::uint64_t digits, int beforePoint) noexcept;
    void AddExponent(int exponent) noexcept;

    wchar_t mUnits[kMaxSize];
    std::size_t mSize = 0;
};
