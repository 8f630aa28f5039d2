#include "simhost/scenario/PositionIndex.h"

#include <algorithm>
#include <cctype>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

bool IsNumber(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

std::string WithoutLastPart(const std::string& pointer) { return pointer.substr(0, pointer.rfind('/')); }

}  // namespace

std::string AsPointerPart(std::string_view name) {
    return ReplaceAll(ReplaceAll(std::string(name), "~", "~0"), "/", "~1");
}

std::string AsMemberPath(std::string_view pointer) {
    std::string path;
    while (!pointer.empty()) {
        const std::size_t end = std::min(pointer.find('/', 1), pointer.size());
        const std::string part = ReplaceAll(ReplaceAll(std::string(pointer.substr(1, end - 1)), "~1", "/"), "~0", "~");
        path += IsNumber(part) ? "[" + part + "]" : (path.empty() ? "" : ".") + part;
        pointer.remove_prefix(end);
    }
    return path;
}

PositionIndex::PositionIndex(std::string_view text) : mText(text), mLines{0} {
    for (std::size_t at = mText.find('\n'); at != std::string::npos; at = mText.find('\n', at + 1)) {
        mLines.push_back(at + 1);
    }
}

void PositionIndex::Add(const std::string& pointer, std::size_t key, std::size_t value) {
    // The first one of a name that stands there twice.
    mMembers.try_emplace(pointer, Offsets{key, value});
}

Position PositionIndex::OfOffset(std::size_t offset) const {
    const std::size_t at = std::min(offset, mText.size());
    const auto next = std::upper_bound(mLines.begin(), mLines.end(), at);
    const std::size_t begin = *(next - 1);
    const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    const auto characters = std::count_if(mText.begin() + static_cast<std::ptrdiff_t>(begin),
                                          mText.begin() + static_cast<std::ptrdiff_t>(at), isFirstByte);
    return {static_cast<std::size_t>(next - mLines.begin()), static_cast<std::size_t>(characters) + 1};
}

Position PositionIndex::OfValue(const std::string& pointer) const { return OfOffset(Nearest(pointer).value); }

Position PositionIndex::OfKey(const std::string& pointer) const { return OfOffset(Nearest(pointer).key); }

PositionIndex::Offsets PositionIndex::Nearest(std::string pointer) const {
    while (!pointer.empty() && !mMembers.contains(pointer)) {
        pointer = WithoutLastPart(pointer);
    }
    const auto found = mMembers.find(pointer);
    return found == mMembers.end() ? Offsets() : found->second;
}

}  // namespace simhost
