// Units on their way into a JSON value.
// Thread: any.
#pragma once

#include <concepts>
#include <cstddef>
#include <string_view>

// Either units as they are, or what stands between the quotes of a JSON text. Does not own them.
class JsonText {
  public:
    JsonText() noexcept = default;

    // Anything that is a text already: std::wstring, a literal.
    template <std::convertible_to<std::wstring_view> Text>
    JsonText(const Text& units) noexcept : mRaw(units), mSize(mRaw.size()) {}

    // `raw` holds escapes, all of them valid, and stands for `size` units.
    JsonText(std::wstring_view raw, std::size_t size) noexcept : mRaw(raw), mSize(size) {}

    std::size_t Size() const noexcept { return mSize; }

    // Writes the units, of which there are Size(), with the escapes resolved.
    void CopyTo(wchar_t* units) const noexcept;

  private:
    std::wstring_view mRaw;
    std::size_t mSize = 0;
};
