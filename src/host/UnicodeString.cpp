#include "host/UnicodeString.h"

#include <span>

#include "host/HeldSuites.h"
#include "host/StringSuites.h"
#include "support/Errors.h"
#include "support/TextConversion.h"

namespace ai {

void ThrowIfRefused(AIErr code) {
    if (code != 0) {
        throw Error(code);
    }
}

UnicodeString::UnicodeString(std::string_view utf8) {
    ThrowIfRefused(sUnicodeStringSuite->Initialize(mData, utf8.data(), static_cast<std::int64_t>(utf8.size()),
                                                   kAIUTF8CharacterEncoding));
}

UnicodeString::UnicodeString(const UnicodeString& other) {
    if (other.mData.impl != nullptr) {
        ThrowIfRefused(sUnicodeStringSuite->Copy(mData, other.mData));
    }
}

UnicodeString& UnicodeString::operator=(const UnicodeString& other) {
    if (this != &other) {
        ThrowIfRefused(sUnicodeStringSuite->Assign(mData, other.mData));
    }
    return *this;
}

UnicodeString::~UnicodeString() {
    // Without the suite the text cannot be returned; the host frees it with itself.
    if (mData.impl != nullptr && sUnicodeStringSuite) {
        sUnicodeStringSuite->Destroy(mData);
    }
}

std::string UnicodeString::ToUtf8() const {
    if (mData.impl == nullptr) {
        return {};
    }
    const HostUtf16Unit* units = nullptr;
    const std::size_t count = sUnicodeStringSuite->UTF_16(mData, units);
    return units == nullptr ? std::string() : Utf8FromUtf16(std::span(units, count));
}

}  // namespace ai
