#include "Anonymizer.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

namespace {

constexpr std::size_t kUnits = 0x10000;
// What the log puts where it has cut a text.
constexpr std::wstring_view kCutMark = L"...";
// Of a name that is cut, so many units at least are looked for: a family name may have two of them.
constexpr std::size_t kFewestOfCutName = 2;

// As file names are compared: unit by unit.
wchar_t Capital(wchar_t unit) {
    // A pointer whose upper half is 0 stands for a character.
    const auto character = reinterpret_cast<LPWSTR>(static_cast<std::uintptr_t>(unit));
    return static_cast<wchar_t>(reinterpret_cast<std::uintptr_t>(CharUpperW(character)));
}

std::wstring Capitals(std::wstring text) {
    std::transform(text.begin(), text.end(), text.begin(), Capital);
    return text;
}

bool IsLetter(wchar_t unit) { return IsCharAlphaW(unit) != FALSE; }
bool IsLetterOrDigit(wchar_t unit) { return IsCharAlphaNumericW(unit) != FALSE; }
bool IsSeparator(wchar_t unit) { return unit == L'\\' || unit == L'/'; }

// 0 behind the end.
wchar_t UnitAt(std::wstring_view text, std::size_t place) { return place < text.size() ? text[place] : L'\0'; }

std::optional<unsigned> HexNumber(std::wstring_view text, std::size_t place, std::size_t digits) {
    unsigned number = 0;
    for (std::size_t i = place; i < place + digits; ++i) {
        const wchar_t unit = UnitAt(text, i);
        if (unit >= L'0' && unit <= L'9') {
            number = number * 16 + static_cast<unsigned>(unit - L'0');
        } else if (const wchar_t capital = Capital(unit); capital >= L'A' && capital <= L'F') {
            number = number * 16 + static_cast<unsigned>(capital - L'A' + 10);
        } else {
            return std::nullopt;
        }
    }
    return number;
}

// A unit of a text as it is meant, and the size of what stands for it.
struct Meant {
    wchar_t unit;
    std::size_t size;
};

// Of the backslashes before the letter of an escape, those that belong to it: one, or two or four when it has been
// escaped again. What is left over are separators, of which there is an even number then.
std::size_t OwnBackslashes(std::size_t all) {
    if (all % 2 != 0) {
        return 1;
    }
    return all % 4 != 0 ? 2 : 4;
}

// "\u00f6"
std::optional<Meant> JsonEscapeAt(std::wstring_view text, std::size_t place) {
    std::size_t letter = place;
    while (UnitAt(text, letter) == L'\\') {
        ++letter;
    }
    std::size_t begin = place;
    while (begin > 0 && text[begin - 1] == L'\\') {
        --begin;
    }
    if (letter == place || UnitAt(text, letter) != L'u' || letter - place != OwnBackslashes(letter - begin)) {
        return std::nullopt;
    }
    const std::optional<unsigned> number = HexNumber(text, letter + 1, 4);
    if (!number) {
        return std::nullopt;
    }
    return Meant{static_cast<wchar_t>(*number), letter + 5 - place};
}

// "%C3%B6": the bytes of UTF-8. A unit of a pair is none of these.
std::optional<Meant> UrlEscapeAt(std::wstring_view text, std::size_t place) {
    std::string utf8;
    for (std::size_t i = place; UnitAt(text, i) == L'%' && utf8.size() < 3; i += 3) {
        const std::optional<unsigned> number = HexNumber(text, i + 1, 2);
        if (!number) {
            break;
        }
        utf8.push_back(static_cast<char>(*number));
        wchar_t unit = 0;
        if (MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), static_cast<int>(utf8.size()), &unit, 1) ==
            1) {
            return Meant{unit, i + 3 - place};
        }
    }
    return std::nullopt;
}

// All separators that stand there, whatever they have been escaped for.
std::size_t SeparatorsAt(std::wstring_view text, std::size_t place) {
    std::size_t end = place;
    for (;;) {
        std::optional<Meant> escape = JsonEscapeAt(text, end);
        if (!escape) {
            escape = UrlEscapeAt(text, end);
        }
        if (escape && IsSeparator(escape->unit)) {
            end += escape->size;
        } else if (!escape && IsSeparator(UnitAt(text, end))) {
            ++end;
        } else {
            return end - place;
        }
    }
}

// An escape, or the unit itself.
Meant MeantAt(std::wstring_view text, std::size_t place) {
    for (const std::optional<Meant>& escape : {JsonEscapeAt(text, place), UrlEscapeAt(text, place)}) {
        if (escape) {
            return *escape;
        }
    }
    return {UnitAt(text, place), 1};
}

// The size of what stands there for the unit, which is a capital; 0 when something else does.
std::size_t UnitSizeAt(std::wstring_view text, std::size_t place, wchar_t expected) {
    if (IsSeparator(expected)) {
        return SeparatorsAt(text, place);
    }
    const wchar_t unit = UnitAt(text, place);
    if (unit == L'\0') {
        return 0;
    }
    if (Capital(unit) == expected) {
        return 1;
    }
    for (const std::optional<Meant>& escape : {JsonEscapeAt(text, place), UrlEscapeAt(text, place)}) {
        if (escape && Capital(escape->unit) == expected) {
            return escape->size;
        }
    }
    return 0;
}

// How much of the pattern stands there, and how much text that is.
struct Match {
    std::size_t units = 0;
    std::size_t size = 0;
};

Match MatchAt(std::wstring_view text, std::size_t place, const std::wstring& pattern) {
    Match match;
    for (const wchar_t expected : pattern) {
        const std::size_t size = UnitSizeAt(text, place + match.size, expected);
        if (size == 0) {
            break;
        }
        ++match.units;
        match.size += size;
    }
    return match;
}

// Whether what ends before `place` is an escape: its letter or digit is none of a word.
bool IsBehindEscape(std::wstring_view text, std::size_t place) {
    const auto endsHere = [&](std::size_t size, wchar_t begin) { return place >= size && text[place - size] == begin; };
    return endsHere(2, L'\\') || (endsHere(3, L'%') && HexNumber(text, place - 2, 2)) ||
           (endsHere(6, L'\\') && text[place - 5] == L'u' && HexNumber(text, place - 4, 4));
}

// Whether a file's name goes on there.
bool NameGoesOn(std::wstring_view text, std::size_t place) {
    const wchar_t unit = UnitAt(text, place);
    return IsLetterOrDigit(unit) || unit == L'_' || unit == L'-' || unit == L'~' ||
           (unit == L'.' && IsLetterOrDigit(UnitAt(text, place + 1)));
}

bool IsCutAt(std::wstring_view text, std::size_t place) { return text.substr(place).starts_with(kCutMark); }

// Whether a line may have been cut there: it ends, or the quotation does.
bool MayBeCut(std::wstring_view text, std::size_t place) {
    const wchar_t unit = UnitAt(text, place);
    return unit == L'\0' || unit == L'\r' || unit == L'\n' || unit == L'\'' || unit == L'"' || IsCutAt(text, place);
}

// The place behind the digits that stand there, `most` of them.
std::size_t BehindHexDigits(std::wstring_view text, std::size_t place, std::size_t most) {
    std::size_t end = place;
    while (end < place + most && HexNumber(text, end, 1)) {
        ++end;
    }
    return end;
}

// The size of an escape that the log has cut: "\u00...", "%C3..."; 0 when there is none.
std::size_t CutEscapeAt(std::wstring_view text, std::size_t place) {
    if (JsonEscapeAt(text, place) || UrlEscapeAt(text, place)) {
        return 0;
    }
    std::size_t end = place;
    while (UnitAt(text, end) == L'%') {
        end = BehindHexDigits(text, end + 1, 2);
    }
    if (end == place) {
        while (UnitAt(text, end) == L'\\') {
            ++end;
        }
        if (end > place && UnitAt(text, end) == L'u') {
            end = BehindHexDigits(text, end + 1, 3);
        }
    }
    return IsCutAt(text, end) ? end - place : 0;
}

// Whether a name of a folder or a file begins there.
bool IsBehindSeparator(std::wstring_view text, std::size_t place) {
    if (place > 0 && IsSeparator(text[place - 1])) {
        return true;
    }
    // Of an escape: "%5C", "\u005c".
    const std::optional<unsigned> number = place >= 2 ? HexNumber(text, place - 2, 2) : std::nullopt;
    return number && IsSeparator(static_cast<wchar_t>(*number)) && IsBehindEscape(text, place) &&
           (text[place - 3] == L'%' || text.substr(place - 4, 2) == L"00");
}

// The size of what stands there of a name that the log has cut; 0 when it has not, or when too little is left of it.
std::size_t CutNameSize(std::wstring_view text, std::size_t place, Match match) {
    if (match.units < kFewestOfCutName || !IsBehindSeparator(text, place)) {
        return 0;
    }
    const std::size_t end = place + match.size;
    const std::size_t escape = CutEscapeAt(text, end);
    return escape > 0 || IsCutAt(text, end) ? match.size + escape : 0;
}

// "C:" may not be the end of a longer word: "ABC:\Users".
bool PathMayBeginAt(std::wstring_view text, std::size_t place) {
    return place == 0 || !IsLetterOrDigit(text[place - 1]) || IsBehindEscape(text, place);
}

// No name of an account or of its folder holds one of these.
bool EndsName(wchar_t unit) {
    return unit < L' ' || std::wstring_view(L"\"*+,:;<=>?[]|").find(unit) != std::wstring_view::npos;
}

// A name of a folder that stands in a text. Blanks, points and apostrophes may belong to it: where it ends is certain
// only before a separator.
struct FolderName {
    std::wstring meant;  // in capitals
    std::size_t size = 0;
    bool isWhole = false;
};

FolderName FolderNameAt(std::wstring_view text, std::size_t place) {
    FolderName name;
    for (std::size_t end = place; end < text.size();) {
        if (SeparatorsAt(text, end) > 0) {
            name.isWhole = true;
            break;
        }
        const Meant meant = MeantAt(text, end);
        const bool isQuotation = meant.unit == L'\'' && !IsLetterOrDigit(UnitAt(text, end + meant.size));
        if (EndsName(meant.unit) || isQuotation || IsCutAt(text, end)) {
            break;
        }
        name.meant += Capital(meant.unit);
        end += meant.size;
        name.size = end - place;
    }
    return name;
}

// Folders beside the profiles that belong to nobody.
bool BelongsToNobody(const FolderName& name) {
    constexpr std::wstring_view kShared[] = {L"PUBLIC", L"DEFAULT", L"DEFAULT USER", L"ALL USERS"};
    return std::ranges::any_of(kShared, [&](std::wstring_view each) {
        return name.meant == each || (!name.isWhole && name.meant.starts_with(each) && name.meant[each.size()] == L' ');
    });
}

}  // namespace

Anonymizer::Anonymizer(Identity identity) : mIdentity(std::move(identity)), mMayBegin(kUnits, false) {
    for (std::vector<std::wstring>* const patterns :
         {&mIdentity.profileFolders, &mIdentity.allProfiles, &mIdentity.names}) {
        for (std::wstring& pattern : *patterns) {
            pattern = Capitals(std::move(pattern));
        }
    }
    for (std::size_t unit = 0; unit < kUnits; ++unit) {
        const auto begins = [capital = Capital(static_cast<wchar_t>(unit))](const std::wstring& pattern) {
            return pattern.starts_with(capital);
        };
        mMayBegin[unit] = unit == L'\\' || unit == L'%' || std::ranges::any_of(mIdentity.profileFolders, begins) ||
                          std::ranges::any_of(mIdentity.allProfiles, begins) ||
                          std::ranges::any_of(mIdentity.names, begins);
    }
}

std::size_t Anonymizer::ProfileAt(std::wstring_view text, std::size_t place) const {
    if (!PathMayBeginAt(text, place)) {
        return 0;
    }
    for (const std::wstring& folder : mIdentity.profileFolders) {
        const Match match = MatchAt(text, place, folder);
        const std::size_t separator = folder.find_last_of(L"\\/");
        const std::size_t end = place + match.size;
        const bool isWhole = match.units == folder.size() && !NameGoesOn(text, end);
        const bool isCut = separator != std::wstring::npos && match.units > separator + 1 && MayBeCut(text, end);
        if (isWhole || isCut) {
            return match.size;
        }
    }
    return 0;
}

Anonymizer::OtherProfile Anonymizer::OtherProfileAt(std::wstring_view text, std::size_t place) const {
    if (!PathMayBeginAt(text, place)) {
        return {};
    }
    for (const std::wstring& folder : mIdentity.allProfiles) {
        const Match match = MatchAt(text, place, folder);
        const std::size_t separators = SeparatorsAt(text, place + match.size);
        if (match.units != folder.size() || separators == 0) {
            continue;
        }
        const std::size_t before = match.size + separators;
        const FolderName name = FolderNameAt(text, place + before);
        if (name.size > 0 && !BelongsToNobody(name)) {
            return {before, name.size};
        }
    }
    return {};
}

std::size_t Anonymizer::NameAt(std::wstring_view text, std::size_t place) const {
    for (const std::wstring& name : mIdentity.names) {
        const Match match = MatchAt(text, place, name);
        if (match.units != name.size()) {
            if (const std::size_t size = CutNameSize(text, place, match); size > 0) {
                return size;
            }
            continue;
        }
        // A name without letters would be found in every number.
        const auto belongsToWord = std::ranges::any_of(name, IsLetter) ? IsLetter : IsLetterOrDigit;
        const bool goesBack = place > 0 && belongsToWord(text[place - 1]) && !IsBehindEscape(text, place);
        if (!goesBack && !belongsToWord(UnitAt(text, place + match.size))) {
            return match.size;
        }
    }
    return 0;
}

std::wstring Anonymizer::Replaced(std::wstring_view text, std::wstring_view profile, std::wstring_view name) const {
    std::wstring result;
    result.reserve(text.size());
    for (std::size_t place = 0; place < text.size();) {
        if (mMayBegin[text[place]]) {
            if (const std::size_t size = ProfileAt(text, place); size > 0) {
                result += profile;
                place += size;
                continue;
            }
            if (const OtherProfile other = OtherProfileAt(text, place); other.nameSize > 0) {
                result += text.substr(place, other.before);
                result += name;
                place += other.before + other.nameSize;
                continue;
            }
            if (const std::size_t size = NameAt(text, place); size > 0) {
                result += name;
                place += size;
                continue;
            }
        }
        result += text[place++];
    }
    return result;
}

std::wstring Anonymizer::WithoutNames(std::wstring_view text) const {
    return Replaced(text, L"%USERPROFILE%", L"<user>");
}

std::wstring Anonymizer::FileNameWithoutNames(std::wstring_view name) const {
    return Replaced(name, L"profile", L"user");
}
