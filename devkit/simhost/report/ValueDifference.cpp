#include "simhost/report/ValueDifference.h"

#include <algorithm>
#include <cstddef>

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// After so many places nobody reads on.
constexpr std::size_t kMostPlaces = 8;
constexpr std::size_t kLongest = 160;

bool StartsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

std::string Dumped(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

// Of a long text the surroundings of the byte `at`.
std::string Excerpt(const std::string& text, std::size_t at) {
    if (text.size() <= kLongest) {
        return text;
    }
    std::size_t begin = at < kLongest / 2 ? 0 : at - kLongest / 2;
    std::size_t end = std::min(begin + kLongest, text.size());
    while (begin < end && !StartsCharacter(text[begin])) {
        ++begin;
    }
    while (end < text.size() && !StartsCharacter(text[end])) {
        ++end;
    }
    return (begin == 0 ? "" : "...") + text.substr(begin, end - begin) + (end == text.size() ? "" : "...");
}

std::size_t FirstDifference(const std::string& a, const std::string& b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    auto at = static_cast<std::size_t>(inA - a.begin());
    while (at > 0 && at < a.size() && !StartsCharacter(a[at])) {
        --at;
    }
    return at;
}

class Differences {
  public:
    void Compare(const Json& expected, const Json& came, const std::string& place) {
        if (expected == came && Dumped(expected) == Dumped(came)) {
            return;
        }
        if (expected.is_object() && came.is_object() && expected != came) {
            CompareMembers(expected, came, place);
        } else if (expected.is_array() && came.is_array()) {
            CompareElements(expected, came, place);
        } else {
            Add(place, Dumped(expected), Dumped(came));
        }
    }

    void CompareTexts(const std::string& expected, const std::string& came) {
        const Json a = Json::parse(expected, nullptr, false);
        const Json b = Json::parse(came, nullptr, false);
        if (a.is_structured() && b.is_structured() && a != b) {
            Compare(a, b, "");
            return;
        }
        Add("", Dumped(expected), Dumped(came));
        if (std::max(expected.size(), came.size()) > kLongest) {
            mLines.push_back("they differ from character " +
                             std::to_string(CharactersUntil(expected, FirstDifference(expected, came)) + 1) + " on");
        }
    }

    std::vector<std::string> Take() {
        if (mPlaces > kMostPlaces) {
            mLines.push_back("and at " + std::to_string(mPlaces - kMostPlaces) + " more places");
        }
        return std::move(mLines);
    }

  private:
    static std::size_t CharactersUntil(const std::string& text, std::size_t end) {
        return static_cast<std::size_t>(
            std::count_if(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), StartsCharacter));
    }

    void CompareMembers(const Json& expected, const Json& came, const std::string& place) {
        const std::string prefix = place.empty() ? "" : place + ".";
        const std::size_t before = mPlaces;
        for (const auto& [key, value] : expected.items()) {
            if (came.contains(key)) {
                Compare(value, came[key], prefix + key);
            } else {
                Add(prefix + key, Dumped(value), "no such member");
            }
        }
        for (const auto& [key, value] : came.items()) {
            if (!expected.contains(key)) {
                Add(prefix + key, "no such member", Dumped(value));
            }
        }
        if (mPlaces == before) {
            Add(place, Dumped(expected), Dumped(came));  // the order of the members
        }
    }

    void CompareElements(const Json& expected, const Json& came, const std::string& place) {
        for (std::size_t i = 0; i < std::max(expected.size(), came.size()); ++i) {
            const std::string element = place + "[" + std::to_string(i) + "]";
            if (i < expected.size() && i < came.size()) {
                Compare(expected[i], came[i], element);
            } else if (i < expected.size()) {
                Add(element, Dumped(expected[i]), "nothing");
            } else {
                Add(element, "nothing", Dumped(came[i]));
            }
        }
    }

    void Add(const std::string& place, const std::string& expected, const std::string& came) {
        if (++mPlaces > kMostPlaces) {
            return;
        }
        const std::size_t at = FirstDifference(expected, came);
        const std::string indent = place.empty() ? "" : "  ";
        if (!place.empty()) {
            mLines.push_back("at " + place);
        }
        mLines.push_back(indent + "expected  " + Excerpt(expected, at));
        mLines.push_back(indent + "came      " + Excerpt(came, at));
    }

    std::vector<std::string> mLines;
    std::size_t mPlaces = 0;
};

}  // namespace

std::vector<std::string> LinesOfDifference(const Json& expected, const Json& came) {
    Differences differences;
    if (expected.is_string() && came.is_string() && expected != came) {
        differences.CompareTexts(expected.get<std::string>(), came.get<std::string>());
    } else {
        differences.Compare(expected, came, "");
    }
    return differences.Take();
}

}  // namespace simhost
