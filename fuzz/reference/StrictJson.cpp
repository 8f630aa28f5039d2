#include "fuzz/reference/StrictJson.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "fuzz/reference/Text.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsOfNumber(char c) { return IsDigit(c) || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E'; }

// The rest of `text` behind a run of digits; nothing when there is no digit.
std::optional<std::string_view> BehindDigits(std::string_view text) {
    const auto end = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin());
    return end == 0 ? std::nullopt : std::optional(text.substr(end));
}

bool IsJsonNumber(std::string_view text) {
    text.remove_prefix(text.starts_with('-') ? 1 : 0);
    std::optional<std::string_view> rest = text.starts_with('0') ? std::optional(text.substr(1)) : BehindDigits(text);
    if (rest && rest->starts_with('.')) {
        rest = BehindDigits(rest->substr(1));
    }
    if (rest && (rest->starts_with('e') || rest->starts_with('E'))) {
        const std::string_view exponent = rest->substr(1);
        rest = BehindDigits(exponent.substr(exponent.starts_with('+') || exponent.starts_with('-') ? 1 : 0));
    }
    return rest && rest->empty();
}

// Goes through the text once and copies it, rewritten, token by token.
class Rewriter {
  public:
    explicit Rewriter(std::string_view text) : mRest(text) {}

    StrictJson Rewrite() {
        if (mRest.starts_with(kByteOrderMark)) {
            mRest.remove_prefix(kByteOrderMark.size());
            Note(Difference::kByteOrderMark);
        }
        while (!mRest.empty()) {
            const char first = mRest.front();
            if (first == '\0') {
                Note(Difference::kNulEndsText);
                break;
            }
            if (first == '"') {
                CopyString();
            } else if (first == '-' || IsDigit(first)) {
                CopyNumber();
            } else if (IsLetter(first)) {
                CopyWord();
            } else {
                Copy(1);
            }
        }
        return std::move(mResult);
    }

  private:
    void Note(Difference difference) { mResult.found.set(static_cast<std::size_t>(difference)); }

    std::string_view Take(std::size_t length) {
        const std::string_view taken = mRest.substr(0, length);
        mRest.remove_prefix(taken.size());
        return taken;
    }
    void Copy(std::size_t length) { mResult.text += Take(length); }

    template <typename Belongs>
    std::string_view TakeRun(Belongs belongs) {
        return Take(static_cast<std::size_t>(std::find_if_not(mRest.begin(), mRest.end(), belongs) - mRest.begin()));
    }

    void CopyWord() {
        const std::string_view word = TakeRun(IsLetter);
        std::string lower(word);
        for (char& c : lower) {
            c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
        const bool isKeyword = lower == "true" || lower == "false" || lower == "null";
        if (isKeyword && lower != word) {
            Note(Difference::kKeywordCase);
        }
        mResult.text += isKeyword ? lower : word;
    }

    // Number or not: what is none does not become one.
    void CopyNumber() {
        const std::string number(TakeRun(IsOfNumber));
        if (!IsJsonNumber(number) || !std::isinf(std::strtod(number.c_str(), nullptr))) {
            mResult.text += number;
            return;
        }
        Note(Difference::kHugeNumber);
        mResult.text += '0';
    }

    void CopyString() {
        Copy(1);
        while (!mRest.empty() && mRest.front() != '"') {
            if (mRest.front() == '\\') {
                CopyEscape();
            } else if (static_cast<unsigned char>(mRest.front()) < 0x20) {
                CopyControlCharacter();
            } else {
                Copy(1);
            }
        }
        Copy(1);
    }

    void CopyControlCharacter() {
        constexpr std::string_view kHexDigits = "0123456789abcdef";
        const auto code = static_cast<std::size_t>(Take(1).front());
        mResult.text += "\\u00";
        mResult.text += kHexDigits[code / 16];
        mResult.text += kHexDigits[code % 16];
        Note(Difference::kControlCharacter);
    }

    // The unit of an escape "\uXXXX" at `place`; -1 when there is none.
    long EscapedUnit(std::size_t place) const {
        const std::string_view escape = mRest.substr(std::min(place, mRest.size()), 6);
        if (escape.size() != 6 || !escape.starts_with("\\u")) {
            return -1;
        }
        const std::string digits(escape.substr(2));
        return digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos
                   ? std::strtol(digits.c_str(), nullptr, 16)
                   : -1;
    }

    void CopyEscape() {
        const long unit = EscapedUnit(0);
        if (unit < 0xD800 || unit > 0xDFFF) {
            Copy(2);
            return;
        }
        const long next = EscapedUnit(6);
        if (unit <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF) {
            Copy(12);
            return;
        }
        Take(6);
        AppendUtf8(StandInFor(static_cast<wchar_t>(unit)), mResult.text);
        Note(Difference::kUnpairedSurrogate);
    }

    std::string_view mRest;
    StrictJson mResult;
};

}  // namespace

StrictJson MadeStrict(std::string_view utf8) { return Rewriter(utf8).Rewrite(); }
