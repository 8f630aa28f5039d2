#include "support/fakes/HostText.h"

#include <utf8cpp/utf8.h>

#include <iterator>

HostText Utf16(const std::string& utf8) {
    HostText text;
    utf8::utf8to16(utf8.begin(), utf8.end(), std::back_inserter(text));
    return text;
}

void SetText(void*& impl, const std::string& utf8) {
    if (impl == nullptr) {
        impl = new HostText;
    }
    *static_cast<HostText*>(impl) = Utf16(utf8);
}

std::string TextOf(const void* impl) {
    std::string utf8;
    if (impl != nullptr) {
        const auto* const text = static_cast<const HostText*>(impl);
        utf8::utf16to8(text->begin(), text->end(), std::back_inserter(utf8));
    }
    return utf8;
}
