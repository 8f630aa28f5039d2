// ai::UnicodeString, the host's string object: one pointer to the host's implementation, null for the empty string. All
// operations go to the host's string suite.
// Thread: main.
#pragma once

#include <string>
#include <string_view>

#include "host/HostTypes.h"

namespace ai {

// The object as it stands in host records and parameters. `impl` is never dereferenced.
struct UnicodeStringData {
    void* impl;
};

// Throws ai::Error for a result that is not 0.
void ThrowIfRefused(AIErr code);

// Owns what the host stores behind `impl`.
class UnicodeString {
  public:
    // Costs no host call.
    UnicodeString() noexcept = default;
    // A host string of the given UTF-8 text. Throws ai::Error when the host refuses it.
    explicit UnicodeString(std::string_view utf8);
    // A second string of the same text, made by the host. Throws ai::Error.
    UnicodeString(const UnicodeString& other);
    // Takes over the other string's text, made by the host. Throws ai::Error and leaves this string as it was.
    UnicodeString& operator=(const UnicodeString& other);
    // Gives the text back to the host when there is one.
    ~UnicodeString();

    // The text as UTF-8. Throws utf8::invalid_utf16 for an unpaired surrogate.
    std::string ToUtf8() const;

    // For host calls that take or fill the object.
    UnicodeStringData& Data() noexcept { return mData; }
    const UnicodeStringData& Data() const noexcept { return mData; }

  private:
    UnicodeStringData mData{nullptr};
};

}  // namespace ai
