#include "diagnostic/RepeatedCalls.h"

#include "diagnostic/LogNesting.h"

bool RepeatedCalls::IsRepetition(std::string_view call) const noexcept { return Find(call) != nullptr; }

bool RepeatedCalls::WasAnswered(std::string_view call, std::string_view answer) const noexcept {
    const Known* const known = Find(call);
    return known != nullptr && known->answer == HashOf(answer);
}

void RepeatedCalls::Remember(std::string_view call, std::string_view answer) noexcept {
    if (const Known* const known = Find(call)) {
        mKnown[static_cast<std::size_t>(known - mKnown.data())].answer = HashOf(answer);
    } else if (mCount < kKept) {
        mKnown[mCount++] = {HashOf(call), HashOf(answer)};
    }
}

const RepeatedCalls::Known* RepeatedCalls::Find(std::string_view call) const noexcept {
    const std::uint64_t hash = HashOf(call);
    for (std::size_t i = 0; i < mCount; ++i) {
        if (mKnown[i].call == hash) {
            return &mKnown[i];
        }
    }
    return nullptr;
}
