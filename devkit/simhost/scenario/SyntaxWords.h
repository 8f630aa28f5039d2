// Says in plain words why a text is no JSON.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace simhost {

struct SyntaxMistake {
    std::size_t offset;  // where in the text it is
    std::string words;
};

// What could not be read: it begins at `begin`, and reading stopped before `reached`. `open` is where the innermost
// array or object begins that is not closed, or npos.
SyntaxMistake MistakeAt(std::string_view text, std::size_t begin, std::size_t reached, std::size_t open);

}  // namespace simhost
