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
    explicit JsonTextCursor(std::wstring_view text) noexcept : mNext(text.data()), mEnd(text.data() + text.size()) {}

    bool AtEnd() const noexcept { return mNext == mEnd; }
    std::wstring_view Rest() const noexcept { return {mNext, static_cast<std::size_t>(mEnd - mNext)}; }

    void Skip(std::size_t units) noexcept { mNext += units; }

    // Space, tab, line feed and carriage return; nothing else separates tokens.
    void SkipWhitespace() noexcept {
        while (mNext != mEnd && (*mNext == L' ' || *mNext == L'\t' || *mNext == L'\n' || *mNext == L'\r')) {
            ++mNext;
        }
    }

    // Everything before the next quote or backslash, stepped over; the text may end first.
    void SkipPlainUnits() noexcept {
        while (mNext != mEnd && *mNext != L'"' && *mNext != L'\\') {
            ++mNext;
        }
    }

    // The next unit, stepped over; the text must not be at its end.
    wchar_t TakeUnit() noexcept { return *mNext++; }

    // Steps over the next unit when it is the expected one.
    bool Take(wchar_t expected) noexcept {
        const bool found = mNext != mEnd && *mNext == expected;
        mNext += found ? 1 : 0;
        return found;
    }

    // The value of the next unit, stepped over, when it is a digit from '0' to '9'.
    std::optional<int> TakeDigit() noexcept {
        if (mNext == mEnd || *mNext < L'0' || *mNext > L'9') {
            return std::nullopt;
        }
        return TakeUnit() - L'0';
    }

  private:
    const wchar_t* mNext;
    const wchar_t* mEnd;
};
