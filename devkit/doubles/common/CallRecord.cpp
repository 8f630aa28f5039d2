#include "doubles/common/CallRecord.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "doubles/common/ThisLibrary.h"

namespace {

using Json = nlohmann::ordered_json;

bool HoldsControlCharacter(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
}

// Replaces what is not UTF-8, so that the result can always be written.
std::string AsUtf8(std::string_view text) {
    const std::string written = Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
    return Json::parse(written).get<std::string>();
}

std::string AsHexadecimal(std::string_view text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string digits;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        digits += kDigits[byte >> 4];
        digits += kDigits[byte & 15];
    }
    return digits;
}

}  // namespace

CallRecord& CallRecord::Text(const char* name, const char* text) {
    if (text == nullptr) {
        mArguments[name] = nullptr;
        return *this;
    }
    std::string readable = AsUtf8(text);
    if (readable != text || HoldsControlCharacter(text)) {
        mArguments[std::string(name) + "_hex"] = AsHexadecimal(text);
    }
    mArguments[name] = std::move(readable);
    return *this;
}

CallRecord& CallRecord::Texts(const char* name, const std::vector<std::string>& texts) {
    mArguments[name] = texts;
    return *this;
}

CallRecord& CallRecord::Number(const char* name, std::int64_t number) {
    mArguments[name] = number;
    return *this;
}

CallRecord& CallRecord::Buffer(const char* buffer, const std::uint64_t* size) {
    if (size == nullptr) {
        mArguments["capacity"] = nullptr;
        return *this;
    }
    return BufferOf(buffer, *size);
}

CallRecord& CallRecord::BufferOf(const char* buffer, std::uint64_t capacity) {
    mArguments["capacity"] = capacity;
    if (buffer == nullptr) {
        mArguments["zeroed"] = nullptr;
    } else {
        mArguments["zeroed"] = std::all_of(buffer, buffer + capacity, [](char c) { return c == 0; });
    }
    return *this;
}

CallRecord& CallRecord::Pointer(const char* name, const void* pointer) {
    mArguments[name] = pointer == nullptr ? "null" : "set";
    return *this;
}

void CallRecord::Write(std::int32_t answer) const {
    const wchar_t* path = _wgetenv(kThisLibrary.recordVariable);
    if (path == nullptr) {
        return;
    }
    std::FILE* file = _wfopen(path, L"ab");
    if (file == nullptr) {
        std::fprintf(stderr, "substitute %s: the record file cannot be written\n", kThisLibrary.name);
        std::abort();
    }
    const Json line = {{"entry", mEntry}, {"arguments", mArguments}, {"answer", answer}};
    const std::string text = line.dump() + "\n";
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}
