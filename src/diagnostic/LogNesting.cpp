#include "diagnostic/LogNesting.h"

namespace {

constexpr std::string_view kMessageOperation = "PluginMain";

// What the fixed lines say before the name of an operation, and the lines about calls of the PluginCore.
constexpr std::string_view kBeforeName[] = {"Entering ",      "Exiting ", "Error thrown in ",
                                            "first call to ", "-> ",      "<- "};

bool IsOfName(char unit) {
    return (unit >= '0' && unit <= '9') || (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z') ||
           unit == '_' || unit == ':';
}

}  // namespace

std::uint64_t HashOf(std::string_view text) noexcept {
    constexpr std::uint64_t kBasis = 0xCBF29CE484222325;
    constexpr std::uint64_t kPrime = 0x100000001B3;
    std::uint64_t hash = kBasis;
    for (const char unit : text) {
        hash = (hash ^ static_cast<unsigned char>(unit)) * kPrime;
    }
    return hash;
}

std::string_view OperationOf(std::string_view text) noexcept {
    for (const std::string_view before : kBeforeName) {
        if (text.starts_with(before)) {
            text.remove_prefix(before.size());
        }
    }
    std::size_t length = 0;
    while (length < text.size() && IsOfName(text[length])) {
        ++length;
    }
    return text.substr(0, length);
}

bool IsEntryOfMessage(std::string_view text) noexcept { return OperationOf(text) == kMessageOperation; }

std::size_t LogNesting::Entry(std::string_view text, LinePlace place) noexcept {
    DropEnded(place.stack);
    for (std::size_t i = mCount; i > 0 && mOpen[i - 1].place.stack == place.stack; --i) {
        if (mOpen[i - 1].place.code == place.code) {
            Keep(i - 1);
        }
    }
    if (IsEntryOfMessage(text) && !IsWithinMessage()) {
        Keep(0);
    }
    const std::size_t level = Level();
    if (level < kKept) {
        mOpen[mCount++] = {place, HashOf(OperationOf(text))};
    } else {
        ++mBeyond;
    }
    return level;
}

std::size_t LogNesting::Exit(std::string_view text, LinePlace place) noexcept {
    if (mBeyond > 0) {
        // Too deep to know more.
        --mBeyond;
        return Level();
    }
    const std::uint64_t name = HashOf(OperationOf(text));
    for (std::size_t i = mCount; i > 0; --i) {
        if (mOpen[i - 1].name == name) {
            Keep(i - 1);
            return Level();
        }
    }
    // Its entry is not known, so it ends nothing else.
    DropEnded(place.stack);
    return Level();
}

std::size_t LogNesting::Note(LinePlace place) noexcept {
    DropEnded(place.stack);
    return Level();
}

void LogNesting::Keep(std::size_t count) noexcept {
    mCount = count;
    mBeyond = 0;
}

void LogNesting::DropEnded(std::uintptr_t stack) noexcept {
    std::size_t count = mCount;
    while (count > 0 && mOpen[count - 1].place.stack < stack) {
        --count;
    }
    if (count < mCount) {
        Keep(count);
    }
}

bool LogNesting::IsWithinMessage() const noexcept {
    const std::uint64_t message = HashOf(kMessageOperation);
    for (std::size_t i = 0; i < mCount; ++i) {
        if (mOpen[i].name == message) {
            return true;
        }
    }
    return false;
}
