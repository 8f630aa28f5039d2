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
    const SuiteCall call(kName, "Initialize");
    if (call.code != 0) {
        return call.code;
    }
    if (string.impl != nullptr || (bytes == nullptr && byteCount != 0) || byteCount < 0) {
        return call.BadArgument("the string holds one already, or there are no bytes");
    }
    std::optional<std::u16string> units = Decode(
        bytes == nullptr ? std::string_view() : std::string_view(bytes, static_cast<std::size_t>(byteCount)), encoding);
    if (!units) {
        return kBadString;
    }
    string.impl = Host().objects.strings.Add(std::move(*units));
    return 0;
}

AIErr Destroy(ai::UnicodeStringData& string) {
    const SuiteCall call(kName, "Destroy");
    if (call.code != 0) {
        return call.code;
    }
    if (!Host().objects.strings.Remove(string.impl)) {
        return call.Stale(Host().objects.strings, string.impl, "string");
    }
    string.impl = nullptr;
    return 0;
}

AIErr Assign(ai::UnicodeStringData& string, const ai::UnicodeStringData& source) {
    const SuiteCall call(kName, "Assign");
    if (call.code != 0) {
        return call.code;
    }
    if (source.impl == nullptr) {
        return AnswerUnits(call, {}, string);
    }
    const std::u16string* const units = Host().objects.strings.Find(source.impl);
    return units == nullptr ? call.Stale(Host().objects.strings, source.impl, "source")
                            : AnswerUnits(call, *units, string);
}

AIErr Copy(ai::UnicodeStringData& string, const ai::UnicodeStringData& source) {
    const SuiteCall call(kName, "Copy");
    if (call.code != 0) {
        return call.code;
    }
    const std::u16string* const units = Host().objects.strings.Find(source.impl);
    if (units == nullptr) {
        return call.Stale(Host().objects.strings, source.impl, "source");
    }
    if (string.impl != nullptr) {
        return call.BadArgument("the target holds a string already");
    }
    string.impl = Host().objects.strings.Add(std::u16string(*units));
    return 0;
}

std::size_t Length(const ai::UnicodeStringData& string) {
    const SuiteCall call(kName, "Length");
    if (call.code != 0 || string.impl == nullptr) {
        return 0;
    }
    const std::u16string* const units = Host().objects.strings.Find(string.impl);
    if (units == nullptr) {
        call.Stale(Host().objects.strings, string.impl, "string");
        return 0;
    }
    return units->size();
}

std::size_t Utf16Units(const ai::UnicodeStringData& string, const HostUtf16Unit*& units) {
    const SuiteCall call(kName, "UTF_16");
    units = nullptr;
    if (call.code != 0 || string.impl == nullptr) {
        return 0;
    }
    const std::u16string* const text = Host().objects.strings.Find(string.impl);
    if (text == nullptr) {
        call.Stale(Host().objects.strings, string.impl, "string");
        return 0;
    }
    units = reinterpret_cast<const HostUtf16Unit*>(text->data());
    return text->size();
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
    return AnswerUnits(call, Utf16(utf8, CP_UTF8).value_or(u""), target);
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
