// "AI Unicode String Suite": the strings behind ai::UnicodeString.
#include <windows.h>

#include <utility>

#include "doubles/common/Text.h"
#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/HostStrings.h"
#include "host/StringSuites.h"

namespace simhost {

namespace {

constexpr const char* kName = "AI Unicode String Suite";
constexpr AIErr kBadString = static_cast<AIErr>(FourCharCode("BSTR"));

std::optional<std::u16string> Decode(std::string_view bytes, std::int32_t encoding) {
    switch (encoding) {
        case kAIPlatformCharacterEncoding:
            return Utf16(bytes, CP_ACP);
        case kAIUTF8CharacterEncoding:
            return Utf16(bytes, CP_UTF8);
        case kAIUTF16CharacterEncoding:
            return std::u16string(reinterpret_cast<const char16_t*>(bytes.data()), bytes.size() / 2);
        default:
            return std::nullopt;
    }
}

AIErr Initialize(ai::UnicodeStringData& string, const char* bytes, std::int64_t byteCount, std::int32_t encoding) {
    const std::string_view text(bytes == nullptr ? "" : bytes,
                                bytes == nullptr || byteCount < 0 ? 0 : static_cast<std::size_t>(byteCount));
    const SuiteCall call(
        kName, "Initialize", [&] { return "'" + std::string(text) + "'"; }, encoding);
    return call.Perform([&] {
        if (string.impl != nullptr || (bytes == nullptr && byteCount != 0) || byteCount < 0) {
            return call.BadArgument("the string holds one already, or there are no bytes");
        }
        std::optional<std::u16string> units = Decode(text, encoding);
        if (!units) {
            return kBadString;
        }
        string.impl = call.HandOut(Host().objects.strings, std::move(*units));
        return 0;
    });
}

AIErr Destroy(ai::UnicodeStringData& string) {
    const SuiteCall call(kName, "Destroy");
    return call.Perform([&] {
        if (!Host().objects.strings.Remove(string.impl)) {
            return call.Stale(Host().objects.strings, string.impl, "string");
        }
        string.impl = nullptr;
        return 0;
    });
}

AIErr Assign(ai::UnicodeStringData& string, const ai::UnicodeStringData& source) {
    const SuiteCall call(kName, "Assign");
    return call.Perform([&] {
        if (source.impl == nullptr) {
            return AnswerUnits(call, {}, string);
        }
        const std::u16string* const units = Host().objects.strings.Find(source.impl);
        return units == nullptr ? call.Stale(Host().objects.strings, source.impl, "source")
                                : AnswerUnits(call, *units, string);
    });
}

AIErr Copy(ai::UnicodeStringData& string, const ai::UnicodeStringData& source) {
    const SuiteCall call(kName, "Copy");
    return call.Perform([&] {
        const std::u16string* const units = Host().objects.strings.Find(source.impl);
        if (units == nullptr) {
            return call.Stale(Host().objects.strings, source.impl, "source");
        }
        if (string.impl != nullptr) {
            return call.BadArgument("the target holds a string already");
        }
        string.impl = Host().objects.strings.Add(std::u16string(*units));
        return 0;
    });
}

// Null for an empty string object, and for a stale one, which is reported.
const std::u16string* UnitsOf(const SuiteCall& call, const ai::UnicodeStringData& string) {
    const std::u16string* const units = Host().objects.strings.Find(string.impl);
    if (units == nullptr && string.impl != nullptr) {
        call.Stale(Host().objects.strings, string.impl, "string");
    }
    return units;
}

std::size_t Length(const ai::UnicodeStringData& string) {
    const SuiteCall call(kName, "Length", Unrecorded());
    const std::u16string* const units = UnitsOf(call, string);
    return units == nullptr ? 0 : units->size();
}

std::size_t Utf16Units(const ai::UnicodeStringData& string, const HostUtf16Unit*& units) {
    const SuiteCall call(kName, "UTF_16", Unrecorded());
    const std::u16string* const text = UnitsOf(call, string);
    units = text == nullptr ? nullptr : reinterpret_cast<const HostUtf16Unit*>(text->data());
    return text == nullptr ? 0 : text->size();
}

}  // namespace

AIErr AnswerUnits(const SuiteCall& call, std::u16string units, ai::UnicodeStringData& target) {
    if (target.impl == nullptr) {
        target.impl = Host().objects.strings.Add(std::move(units));
        return 0;
    }
    std::u16string* const held = Host().objects.strings.Find(target.impl);
    if (held == nullptr) {
        return call.Stale(Host().objects.strings, target.impl, "string");
    }
    *held = std::move(units);
    return 0;
}

AIErr AnswerText(const SuiteCall& call, std::string_view utf8, ai::UnicodeStringData& target) {
    return AnswerUnits(call, HostUnits(utf8), target);
}

void InstallStringSuite(SuiteStore& suites) {
    auto& table = suites.Table<AIUnicodeStringSuite>(kName);
    table.Initialize = &Initialize;
    table.Destroy = &Destroy;
    table.Assign = &Assign;
    table.Copy = &Copy;
    table.Length = &Length;
    table.UTF_16 = &Utf16Units;
}

}  // namespace simhost
