#include "simhost/scenario/SyntaxWords.h"

#include <algorithm>

namespace simhost {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// What stands before `at`, blanks left out; 0 at the beginning of the text.
char CharacterBefore(std::string_view text, std::size_t at) {
    const std::size_t found = text.substr(0, at).find_last_not_of(kBlanks);
    return found == std::string_view::npos ? '\0' : text[found];
}

bool IsOneOf(char c, std::string_view characters) { return c != '\0' && characters.find(c) != std::string_view::npos; }

// The beginning of what stands there, short enough to be shown.
std::string Shown(std::string_view rest) {
    constexpr std::size_t kLength = 20;
    std::size_t length = std::min(rest.find_first_of(" \t\r\n,:]}", 1), rest.size());
    if (length > kLength) {
        length = kLength;
        // Not within a character.
        while (length > 1 && (static_cast<unsigned char>(rest[length]) & 0xC0) == 0x80) {
            --length;
        }
    }
    return std::string(rest.substr(0, length));
}

std::string WordsForText(std::string_view part) {
    const char last = part.empty() ? '\0' : part.back();
    if (static_cast<unsigned char>(last) < 0x20) {
        return "the text is not closed on its line; in a text a line end is written \\n";
    }
    return part.find('\\') != std::string_view::npos
               ? "the text holds a \\ that stands for nothing; \\\\ is one backslash"
               : "the text is not closed";
}

std::string WordsForUnexpected(std::string_view text, std::size_t begin) {
    const std::string_view rest = text.substr(begin);
    const char before = CharacterBefore(text, begin);
    if (rest.starts_with("//") || rest.starts_with("/*")) {
        return "JSON has no comments";
    }
    if (rest.starts_with("'")) {
        return "texts stand between double quotes";
    }
    if (IsOneOf(rest.front(), "]}") && before == ',') {
        return std::string("there is a comma too many before ") + rest.front();
    }
    if (IsOneOf(rest.front(), ",:]}")) {
        return std::string("unexpected ") + rest.front();
    }
    if (!IsOneOf(before, ",:[{") && before != '\0') {
        return "a comma is missing before " + Shown(rest) + ", or something is closed too early";
    }
    return "unexpected " + Shown(rest);
}

}  // namespace

SyntaxMistake MistakeAt(std::string_view text, std::size_t begin, std::size_t reached, std::size_t open) {
    begin = std::min(begin, text.size());
    const std::string_view part = text.substr(begin, std::max(begin, reached) - begin);
    // A mark that cannot stand there, whatever came before it.
    if (reached > 0 && reached <= text.size() && IsOneOf(text[reached - 1], ",:") &&
        part.find('"') == std::string_view::npos && part.size() <= 1) {
        return {reached - 1, std::string("unexpected ") + text[reached - 1]};
    }
    if (begin >= text.size()) {
        return open == std::string_view::npos
                   ? SyntaxMistake{begin, "the file is empty"}
                   : SyntaxMistake{open, std::string("the ") + text[open] + " is not closed before the file ends"};
    }
    if (part.starts_with('"') && (part.size() == 1 || part.back() != '"')) {
        return {begin, WordsForText(part)};
    }
    return {begin, WordsForUnexpected(text, begin)};
}

}  // namespace simhost
