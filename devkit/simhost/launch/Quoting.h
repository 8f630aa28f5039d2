// Command lines of Windows: one text for all arguments, which each program takes apart by itself.
#pragma once

#include <string>
#include <string_view>

namespace simhost {

// The argument as CommandLineToArgvW and the C runtime read it back, whatever it holds but a zero.
std::wstring Quoted(std::wstring_view argument);

}  // namespace simhost
