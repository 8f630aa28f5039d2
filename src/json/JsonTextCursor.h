// A place in a JSON text that moves forward as the text is read.
//
// Thread: any.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

// Does not own the text.
class JsonTextCursor {
  public:
    explicit JsonTextCursor(std::wstring_view text) noexcept : mRest(text) {}

    bool AtEnd() const noexcept { return mRest.empty(); }
    std::wstring_view Rest() const noexcept { return mRest; }

    void Skip(std::size_t units) noexcept { mRest.remove_prefix(units); }

    // Space, tab, line feed and carriage return; nothing else separates tokens.
    void SkipWhitespace() noexcept {
        const std::size_t blanks = mRest.find_first_not_of(L" \t\n\r");
        mRest.remove_prefix(blanks == std::wstring_view::npos ? mRest.size() : blanks);
    }

    // The next unit, stepped over; the text must not be at its end.
    wchar_t TakeUnit() noexcept {
        const wchar_t unit = mRest.front();
        mRest.remove_prefix(1);
        return unit;
    }

    // Steps over the next unit when it is the expected one.
    bool Take(wchar_t expected) noexcept {
        const bool found = mRest.starts_with(expected);
        if (found) {
            mRest.remove_prefix(1);
        }
        return found;
    }

    // The value of the next unit, stepped over, when it is a digit from '0' to '9'.
    std::optional<int> TakeDigit() noexcept {
        if (mRest.empty() || mRest.front() < L'0' || mRest.front() > L'9') {
            return std::nullopt;
        }
        return TakeUnit() - L'0';
    }

  private:
    std::wstring_view mRest;
};
