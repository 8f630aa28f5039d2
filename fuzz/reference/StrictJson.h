// What the plug-in's JSON parser and nlohmann's take differently, by name; and how a text is rewritten so that both
// must take it, or neither.
#pragma once

#include <array>
#include <bitset>
#include <string>
#include <string_view>

enum class Difference {
    // The plug-in takes it, nlohmann's reader does not.
    kKeywordCase,        // "TRUE", "Null"
    kControlCharacter,   // below 32, as it is, in a string
    kUnpairedSurrogate,  // "\uD800": each escape is one unit, and not looked at further
    kHugeNumber,         // too large for a double: infinite
    // The other way round.
    kByteOrderMark,  // before the text
    kNulEndsText,    // and what follows is not looked at
};
constexpr std::size_t kDifferenceCount = 6;
using Differences = std::bitset<kDifferenceCount>;

struct NamedDifference {
    Difference difference;
    // Of the file in corpus/json that shows this difference and no other.
    const char* name;
    bool pluginTakesIt;
};
constexpr std::array<NamedDifference, kDifferenceCount> kDifferences = {{
    {Difference::kKeywordCase, "keyword-case", true},
    {Difference::kControlCharacter, "control-character", true},
    {Difference::kUnpairedSurrogate, "unpaired-surrogate", true},
    {Difference::kHugeNumber, "huge-number", true},
    {Difference::kByteOrderMark, "byte-order-mark", false},
    {Difference::kNulEndsText, "nul-ends-text", false},
}};
// Numbers are a difference of another kind: both take them, but the plug-in's are made digit by digit, and are off by
// some last bits. See JsonTrees.h.

struct StrictJson {
    std::string text;  // differs only where a difference was found
    Differences found;

    bool Has(Difference difference) const { return found[static_cast<std::size_t>(difference)]; }
};

// An unpaired surrogate's place in a strict text: a code point of its own, which nobody uses.
inline char32_t StandInFor(wchar_t unpairedSurrogate) {
    return 0x10F000 + (static_cast<char32_t>(unpairedSurrogate) - 0xD800);
}

// `utf8` must be valid. Whether the text is JSON does not matter. In the strict text an unpaired surrogate is its
// stand-in, and a huge number is 0.
StrictJson MadeStrict(std::string_view utf8);
