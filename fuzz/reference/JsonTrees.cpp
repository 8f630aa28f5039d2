#include "fuzz/reference/JsonTrees.h"

#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/reference/Text.h"
#include "fuzz/Targets.h"
#include "json/JsonParser.h"
#include "json/JsonWriter.h"

namespace {

using Json = nlohmann::json;

// The largest double is 1.7976...e308; written with 15 digits, and read again in steps, it may become infinite.
constexpr double kNearlyInfinite = 1.797e308;
// Below the smallest normal double each step of a number loses bits.
constexpr double kNearlyZero = 1e-300;

// How far numbers may be apart. A number that is read in steps (value * 10 + digit, then a multiplication or division
// by ten for each of the exponent) is off by at most half of a last bit for each step.
enum class Closeness {
    kDigitsOf15,      // written with 15 digits, read exactly
    kOrdinarySteps,   // at most 40 digits on each side, an exponent below 250: 330 steps, none of which over- or
                      // underflows
    kUnorderedSteps,  // a step may over- or underflow before the others make up for it: only the sign is known
};

// Whether all numbers of a text are within what kOrdinarySteps says; strings of digits in it count as numbers as well.
bool HasOnlyOrdinaryNumbers(std::string_view text) {
    std::size_t digits = 0;
    long exponent = -1;  // not inside of one
    for (const char c : text) {
        if (c >= '0' && c <= '9') {
            exponent = exponent < 0 ? exponent : exponent * 10 + (c - '0');
            if (++digits > 40 || exponent >= 250) {
                return false;
            }
        } else {
            digits = 0;
            const bool continues = exponent == 0 && (c == '+' || c == '-');
            exponent = c == 'e' || c == 'E' || continues ? 0 : -1;
        }
    }
    return true;
}

bool AreClose(double ours, double theirs, Closeness closeness) {
    if (std::isnan(ours)) {
        return false;
    }
    if (ours == theirs) {
        return true;
    }
    if (closeness == Closeness::kUnorderedSteps) {
        return ours == 0 || theirs == 0 || std::signbit(ours) == std::signbit(theirs);
    }
    return std::abs(ours - theirs) <= (closeness == Closeness::kDigitsOf15 ? 1e-14 : 1e-13) * std::abs(theirs);
}

std::wstring WithStandIns(std::wstring_view units) {
    std::wstring result;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto isHigh = [&](std::size_t place) { return units[place] >= 0xD800 && units[place] <= 0xDBFF; };
        const auto isLow = [&](std::size_t place) { return units[place] >= 0xDC00 && units[place] <= 0xDFFF; };
        if (isHigh(i) && i + 1 < units.size() && isLow(i + 1)) {
            result += units[i++];
            result += units[i];
        } else if (isHigh(i) || isLow(i)) {
            std::string standIn;
            AppendUtf8(StandInFor(units[i]), standIn);
            result += *ReferenceUtf16(standIn);
        } else {
            result += units[i];
        }
    }
    return result;
}

// What a string of the plug-in's is in the strict text.
std::string StrictUtf8(std::wstring_view units) { return *ReferenceUtf8(WithStandIns(units)); }

bool AreCloseOrHuge(double ours, const Json& theirs, Closeness closeness, const Differences& found) {
    // Infinity is written as null.
    if (theirs.is_null()) {
        return closeness == Closeness::kDigitsOf15 && std::isinf(ours);
    }
    if (!theirs.is_number()) {
        return false;
    }
    const auto number = theirs.get<double>();
    const bool isHuge = found[static_cast<std::size_t>(Difference::kHugeNumber)] && number == 0;
    return (isHuge && std::abs(ours) >= kNearlyInfinite) || AreClose(ours, number, closeness);
}

class TreeComparison {
  public:
    TreeComparison(Closeness closeness, const Differences& found) : mCloseness(closeness), mFound(found) {}

    void Require(const JsonValue& ours, const Json& theirs) {
        mPending = {{&ours, &theirs}};
        while (!mPending.empty()) {
            const auto [mine, other] = mPending.back();
            mPending.pop_back();
            ::Require(IsTheSame(*mine, *other), "json: the trees differ");
        }
    }

  private:
    // Of containers the children are left for later: trees may be deep.
    bool IsTheSame(const JsonValue& ours, const Json& theirs) {
        switch (ours.GetKind()) {
            case JsonValue::Kind::Null:
                return theirs.is_null();
            case JsonValue::Kind::Bool:
                return theirs.is_boolean() && theirs.get<bool>() == ours.AsBool();
            case JsonValue::Kind::Number:
                return AreCloseOrHuge(ours.AsNumber(), theirs, mCloseness, mFound);
            case JsonValue::Kind::String:
                return theirs.is_string() && theirs.get_ref<const std::string&>() == StrictUtf8(ours.AsString());
            case JsonValue::Kind::Array:
                return theirs.is_array() && HasTheSameElements(ours, theirs);
            case JsonValue::Kind::Object:
                return theirs.is_object() && HasTheSameMembers(ours, theirs);
        }
        return false;
    }

    bool HasTheSameElements(const JsonValue& ours, const Json& theirs) {
        std::size_t count = 0;
        for (const JsonValue& element : ours.AsArray()) {
            if (count == theirs.size()) {
                return false;
            }
            mPending.emplace_back(&element, &theirs[count++]);
        }
        return count == theirs.size();
    }

    bool HasTheSameMembers(const JsonValue& ours, const Json& theirs) {
        std::size_t count = 0;
        for (const JsonValue& member : ours.AsObject()) {
            const auto found = theirs.find(StrictUtf8(member.Key()));
            if (found == theirs.end()) {
                return false;
            }
            mPending.emplace_back(&member, &*found);
            ++count;
        }
        return count == theirs.size();
    }

    Closeness mCloseness;
    Differences mFound;
    std::vector<std::pair<const JsonValue*, const Json*>> mPending;
};

struct Census {
    std::size_t values = 0;
    bool hasOnlyExactNumbers = true;
};

// Of the whole tree, which must be sound.
Census Count(const JsonValue& root) {
    const auto requireUnits = [](std::wstring_view text) {
        for (const wchar_t unit : text) {
            Require(static_cast<std::uint64_t>(unit) >> 16 == 0, "json: a unit has more than 16 bits");
        }
    };
    Census census;
    std::vector<const JsonValue*> pending = {&root};
    while (!pending.empty()) {
        const JsonValue& value = *pending.back();
        pending.pop_back();
        ++census.values;
        if (value.IsString()) {
            requireUnits(value.AsString());
        } else if (value.IsNumber()) {
            const double number = value.AsNumber();
            // Whole numbers of 15 digits are written and read as they are.
            census.hasOnlyExactNumbers &= std::abs(number) < 1e15 && number == std::trunc(number);
        } else if (value.IsArray()) {
            for (const JsonValue& element : value.AsArray()) {
                pending.push_back(&element);
            }
        } else if (value.IsObject()) {
            const JsonValue* previous = nullptr;
            for (const JsonValue& member : value.AsObject()) {
                Require(previous == nullptr || previous->Key() < member.Key(), "json: keys out of order");
                previous = &member;
                requireUnits(member.Key());
                pending.push_back(&member);
            }
        }
    }
    return census;
}

// The parser on text that has none of the names of Difference in it but those that it takes.
Json RequireSameVerdict(const JsonValue* value, const StrictJson& strict) {
    Json theirs = Json::parse(strict.text, nullptr, false);
    Require((value != nullptr) == !theirs.is_discarded(), "json: one reader takes the text, the other does not");
    return theirs;
}

// A number that was infinite once is null now, and may be anything when it was nearly so.
bool ReadAgainIsTheSame(const JsonValue& before, const JsonValue& after) {
    if (!before.IsNumber()) {
        return before.GetKind() == after.GetKind();
    }
    const double number = before.AsNumber();
    if (!std::isfinite(number)) {
        return after.IsNull();
    }
    if (!after.IsNumber()) {
        return false;
    }
    const double again = after.AsNumber();
    if (std::abs(number) >= kNearlyInfinite) {
        return std::abs(again) >= kNearlyInfinite * (1 - 1e-12);
    }
    return AreClose(again, number, Closeness::kOrdinarySteps) ||
           (std::abs(number) < kNearlyZero && std::abs(again) < 2 * kNearlyZero);
}

void RequireReadAgain(const JsonValue& root, const JsonValue& again) {
    std::vector<std::pair<const JsonValue*, const JsonValue*>> pending = {{&root, &again}};
    while (!pending.empty()) {
        const auto [before, after] = pending.back();
        pending.pop_back();
        Require(ReadAgainIsTheSame(*before, *after), "json: a value changes when it is written and read again");
        if (before->IsString()) {
            Require(before->AsString() == after->AsString(), "json: a string changes when written and read again");
        } else if (before->IsBool()) {
            Require(before->AsBool() == after->AsBool(), "json: a truth changes when written and read again");
        }
        const JsonValue* a = before->FirstChild();
        const JsonValue* b = after->FirstChild();
        for (; a != nullptr && b != nullptr; a = a->NextSibling(), b = b->NextSibling()) {
            Require(a->Key() == b->Key(), "json: a key changes when written and read again");
            pending.emplace_back(a, b);
        }
        Require(a == b, "json: an array or an object changes its size");
    }
}

}  // namespace

void RequireTheSameAsNlohmann(const JsonValue* value, std::string_view utf8) {
    const StrictJson strict = MadeStrict(utf8);
    if (strict.Has(Difference::kByteOrderMark) || strict.Has(Difference::kNulEndsText)) {
        Require(value == nullptr, "json: a text with a byte order mark or with more behind a NUL was taken");
        return;
    }
    const Json theirs = RequireSameVerdict(value, strict);
    if (value == nullptr) {
        return;
    }
    Require(strict.found.none() || !Json::accept(utf8), "json: a difference that is none");
    const bool isOrdinary = HasOnlyOrdinaryNumbers(utf8);
    TreeComparison(isOrdinary ? Closeness::kOrdinarySteps : Closeness::kUnorderedSteps, strict.found)
        .Require(*value, theirs);
}

void RequireRoundTrip(const JsonValue& value, std::size_t textSize) {
    const Census census = Count(value);
    Require(census.values <= textSize, "json: more values than the text has units");
    const std::wstring text = WriteJson(&value);
    // A number takes up to 22 units, whatever it was written with; a unit of a string up to 6.
    Require(text.size() <= 22 * census.values + 6 * textSize, "json: the written text is too long");

    const StrictJson strict = MadeStrict(StrictUtf8(text));
    Differences mayHave;
    mayHave.set(static_cast<std::size_t>(Difference::kHugeNumber));
    Require((strict.found & ~mayHave).none(), "json: the writer needs a lenient reader");
    TreeComparison(Closeness::kDigitsOf15, strict.found).Require(value, RequireSameVerdict(&value, strict));

    const std::unique_ptr<JsonValue> again = ParseJson(text);
    Require(again != nullptr, "json: the written text does not parse");
    RequireReadAgain(value, *again);
    if (census.hasOnlyExactNumbers) {
        Require(WriteJson(again.get()) == text, "json: writing is no fixed point");
    }
}
