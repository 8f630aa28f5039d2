#include "simhost/launch/Patterns.h"

#include <cctype>

namespace simhost {

namespace {

bool IsSame(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

}  // namespace

bool HasWildcards(std::string_view text) { return text.find_first_of("*?") != std::string_view::npos; }

bool MatchesPattern(std::string_view text, std::string_view pattern) {
    // Where to go on when what follows the last star does not fit: the star takes one more character.
    std::size_t star = std::string_view::npos;
    std::size_t taken = 0;
    std::size_t t = 0;
    std::size_t p = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            taken = t;
        } else if (p < pattern.size() && (pattern[p] == '?' || IsSame(pattern[p], text[t]))) {
            ++p;
            ++t;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            t = ++taken;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

}  // namespace simhost
