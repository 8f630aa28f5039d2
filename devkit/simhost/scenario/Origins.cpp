#include "simhost/scenario/Origins.h"

#include <utility>

namespace simhost {

namespace {

bool IsAtOrBelow(const std::string& pointer, const std::string& top) {
    return pointer.starts_with(top) && (pointer.size() == top.size() || pointer[top.size()] == '/');
}

}  // namespace

void Origins::ForgetBelow(const std::string& pointer) {
    std::erase_if(mSources, [&](const auto& row) { return IsAtOrBelow(row.first, pointer); });
}

void Origins::Set(const std::string& pointer, const std::string& source) {
    ForgetBelow(pointer);
    mSources[pointer] = source;
}

void Origins::SetDefault(const std::string& pointer) {
    ForgetBelow(pointer);
    mSources[pointer] = std::nullopt;
}

void Origins::SetCopy(const std::string& pointer, const std::string& original) {
    Sources copied;
    copied[pointer] = Of(original);
    for (const auto& [member, source] : mSources) {
        if (IsAtOrBelow(member, original)) {
            copied[pointer + member.substr(original.size())] = source;
        }
    }
    ForgetBelow(pointer);
    mSources.merge(std::move(copied));
}

std::optional<std::string> Origins::Of(const std::string& pointer) const {
    for (std::string top = pointer;; top.resize(top.rfind('/'))) {
        if (const auto found = mSources.find(top); found != mSources.end()) {
            return found->second ? std::optional(*found->second + pointer.substr(top.size())) : std::nullopt;
        }
        if (top.empty()) {
            return pointer;
        }
    }
}

}  // namespace simhost
