#include "simhost/contract/ContractBook.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace simhost::contract {

std::string Describe(const Finding& finding) {
    const std::string call = finding.call == 0 ? "" : ", call " + std::to_string(finding.call);
    return finding.entry.empty() ? finding.seen : finding.entry + call + ": " + finding.seen;
}

void ContractBook::Tried(ClauseId clause) {
    const std::lock_guard lock(mMutex);
    ++mTried[clause];
}

void ContractBook::Broken(Finding finding) {
    const std::lock_guard lock(mMutex);
    ++mTried[finding.clause];
    const bool known = std::any_of(mFindings.begin(), mFindings.end(), [&](const Finding& other) {
        return other.clause == finding.clause && other.entry == finding.entry && other.seen == finding.seen;
    });
    if (!known) {
        mFindings.push_back(std::move(finding));
    }
}

std::int64_t ContractBook::TimesTried(ClauseId clause) const {
    const std::lock_guard lock(mMutex);
    const auto found = mTried.find(clause);
    return found == mTried.end() ? 0 : found->second;
}

std::vector<Finding> ContractBook::TakeNew() {
    const std::lock_guard lock(mMutex);
    const std::vector<Finding> added(mFindings.begin() + static_cast<std::ptrdiff_t>(mTaken), mFindings.end());
    mTaken = mFindings.size();
    return added;
}

ContractBook& Book() {
    static auto* const sBook = new ContractBook;
    return *sBook;
}

}  // namespace simhost::contract
