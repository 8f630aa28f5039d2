#include "doubles/common/Text.h"

#include <windows.h>

#include <algorithm>

namespace simhost {

namespace {

std::wstring ToWide(std::string_view bytes, unsigned codePage, DWORD flags) {
    const int size = static_cast<int>(bytes.size());
    const int count = MultiByteToWideChar(codePage, flags, bytes.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(count), L'\0');
    MultiByteToWideChar(codePage, flags, bytes.data(), size, wide.data(), count);
    return wide;
}

constexpr std::size_t kBytesOfSurrogate = 3;

// 0xED, then 0xA0 or more: UTF-8 keeps this for surrogates, which it does not allow.
std::size_t FindSurrogate(std::string_view bytes) {
    for (std::size_t i = 0; i + kBytesOfSurrogate <= bytes.size(); ++i) {
        if (bytes[i] == '\xED' && static_cast<unsigned char>(bytes[i + 1]) >= 0xA0) {
            return i;
        }
    }
    return std::string_view::npos;
}

char16_t SurrogateAt(std::string_view bytes, std::size_t at) {
    const auto low = [&](std::size_t i) { return static_cast<unsigned>(bytes[at + i]) & 0x3F; };
    return static_cast<char16_t>(0xD000 | (low(1) << 6) | low(2));
}

}  // namespace

std::wstring Wide(std::string_view utf8) { return utf8.empty() ? std::wstring() : ToWide(utf8, CP_UTF8, 0); }

std::string Utf8(std::wstring_view wide) {
    if (wide.empty()) {
        return {};
    }
    const int size = static_cast<int>(wide.size());
    const int count = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(count), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), count, nullptr, nullptr);
    return utf8;
}

std::optional<std::u16string> Utf16(std::string_view bytes, unsigned codePage) {
    if (bytes.empty()) {
        return std::u16string();
    }
    const std::wstring wide = ToWide(bytes, codePage, MB_ERR_INVALID_CHARS);
    if (wide.empty()) {
        return std::nullopt;
    }
    return std::u16string(wide.begin(), wide.end());
}

std::u16string HostUnits(std::string_view utf8) {
    std::u16string units;
    while (!utf8.empty()) {
        const std::size_t end = std::min(FindSurrogate(utf8), utf8.size());
        const std::optional<std::u16string> before = Utf16(utf8.substr(0, end), CP_UTF8);
        if (!before) {
            return {};
        }
        units += *before;
        if (end < utf8.size()) {
            units += SurrogateAt(utf8, end);
        }
        utf8.remove_prefix(std::min(end + kBytesOfSurrogate, utf8.size()));
    }
    return units;
}

std::string Utf8(std::u16string_view units) { return Utf8(std::wstring(units.begin(), units.end())); }

std::string ReplaceAll(std::string text, std::string_view from, std::string_view to) {
    if (from.empty()) {
        return text;
    }
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::string AsJsonText(std::string_view utf8) {
    std::string text;
    for (const char c : utf8) {
        if (c == '"' || c == '/' || c == '\\') {
            text += '\\';
        }
        text += c;
    }
    return text;
}

std::string FourCharacters(unsigned code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += static_cast<char>((code >> shift) & 0xFF);
    }
    return text;
}

}  // namespace simhost
