#include "diagnostic/LineText.h"

#include <windows.h>

#include "diagnostic/TextWriter.h"

namespace {

// The count of units; 0 when it is not valid in the code page or does not fit.
std::size_t Widen(UINT codePage, DWORD flags, std::string_view text, std::span<wchar_t> wide) {
    const int count = MultiByteToWideChar(codePage, flags, text.data(), static_cast<int>(text.size()), wide.data(),
                                          static_cast<int>(wide.size()) - 1);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

}  // namespace

std::string_view AsUtf8(std::string_view text, std::span<wchar_t> wide, std::span<char> utf8) noexcept {
    if (const std::string_view whole = WithoutCutCharacter(text);
        whole.empty() || Widen(CP_UTF8, MB_ERR_INVALID_CHARS, whole, wide) != 0) {
        return whole;
    }
    const std::size_t units = Widen(CP_ACP, 0, text, wide);
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(units), utf8.data(),
                                         static_cast<int>(utf8.size()), nullptr, nullptr);
    return {utf8.data(), size > 0 ? static_cast<std::size_t>(size) : 0};
}

const wchar_t* AsWide(std::string_view utf8, std::span<wchar_t> wide) noexcept {
    wide[Widen(CP_UTF8, 0, utf8, wide)] = L'\0';
    return wide.data();
}
