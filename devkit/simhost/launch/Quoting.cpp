#include "simhost/launch/Quoting.h"

#include <cstddef>

namespace simhost {

// A backslash stands for itself, but one of a row that ends at a quotation mark is written twice.
std::wstring Quoted(std::wstring_view argument) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'"') {
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L"\"";
}

}  // namespace simhost
