// The floor of a tree of values that each have a block of their own.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// The sizes of the blocks of a tree that has one for each value of the text (UTF-8): four pointers' worth, and the
// units of key and string.
std::vector<std::size_t> BlockSizes(const std::string& text);

// Takes them all, then gives them back in the same order.
void TakeAndGiveBack(const std::vector<std::size_t>& sizes, std::vector<void*>& blocks);

}  // namespace bench
