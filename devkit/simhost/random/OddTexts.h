// Texts of all sorts: valid and not, short and long.
//
// Thread: any.
#pragma once

#include <string>
#include <vector>

namespace simhost {

const std::vector<std::string>& OddTexts();

}  // namespace simhost
