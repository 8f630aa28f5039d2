// Where in a file the members of its JSON stand: line and column by JSON pointer ("/steps/0/do").
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace simhost {

struct Position {
    std::size_t line = 0;    // from 1; 0: not known
    std::size_t column = 0;  // from 1, in characters

    auto operator<=>(const Position&) const = default;  // NOLINT(modernize-use-nullptr): the compiler's code
};

// "a/b" becomes "a~1b": a name as a part of a JSON pointer, and back.
std::string AsPointerPart(std::string_view name);
// "/steps/0/calls" becomes "steps[0].calls".
std::string AsMemberPath(std::string_view pointer);

class PositionIndex {
  public:
    explicit PositionIndex(std::string_view text);

    // `key` is where the name of the member begins; of an element that has none it is the same as `value`.
    void Add(const std::string& pointer, std::size_t key, std::size_t value);

    Position OfOffset(std::size_t offset) const;
    // Of the member, or else of the nearest one around it.
    Position OfValue(const std::string& pointer) const;
    Position OfKey(const std::string& pointer) const;

  private:
    struct Offsets {
        std::size_t key = 0;
        std::size_t value = 0;
    };

    Offsets Nearest(std::string pointer) const;

    std::string mText;
    std::vector<std::size_t> mLines;  // where each begins
    std::unordered_map<std::string, Offsets> mMembers;
};

}  // namespace simhost
