#include "simhost/contract/ContractBook.h"

#include <algorithm>
#include <mutex>
#include <nlohmann/json.hpp>
#include <utility>

namespace simhost::contract {

std::string Describe(const Finding& finding) {
    const std::string call = finding.call == 0 ? "" : ", call " + std::to_string(finding.call);
    return finding.entry.empty() ? finding.seen : finding.entry + call + ": " + finding.seen;
}

void ContractBook::Tried(ClauseId clause) {
    const std::lock_guard lock(mMutex);
    if (mTried.insert(clause).second) {
        Write({{"tried", ClauseOf(clause).name}});
    }
}

void ContractBook::Broken(Finding finding) {
    const std::lock_guard lock(mMutex);
    mTried.insert(finding.clause);
    const bool known = std::any_of(mFindings.begin(), mFindings.end(), [&](const Finding& other) {
        return other.clause == finding.clause && other.entry == finding.entry && other.seen == finding.seen;
    });
    if (!known) {
        Write({{"clause", ClauseOf(finding.clause).name},
               {"entry", finding.entry},
               {"call", finding.call},
               {"seen", finding.seen}});
        mFindings.push_back(std::move(finding));
    }
}

bool ContractBook::HasBroken(ClauseId clause) const {
    const std::lock_guard lock(mMutex);
    return std::any_of(mFindings.begin(), mFindings.end(),
                       [&](const Finding& finding) { return finding.clause == clause; });
}

std::vector<Finding> ContractBook::TakeNew() {
    const std::lock_guard lock(mMutex);
    std::vector<Finding> added(mFindings.begin() + static_cast<std::ptrdiff_t>(mTaken), mFindings.end());
    mTaken = mFindings.size();
    return added;
}

void ContractBook::ForgetFindings() {
    const std::lock_guard lock(mMutex);
    mFindings.clear();
    mTaken = 0;
}

void ContractBook::KeepIn(const std::filesystem::path& file) { mFile.Open(file, L"wb"); }

void ContractBook::Begin(const std::string& entry, int call) {
    const std::lock_guard lock(mMutex);
    Write({{"begin", entry}, {"call", call}});
}

void ContractBook::End() {
    const std::lock_guard lock(mMutex);
    Write({{"end", true}});
}

void ContractBook::Done() {
    const std::lock_guard lock(mMutex);
    Write({{"done", true}});
}

void ContractBook::Note(const std::string& what) {
    const std::lock_guard lock(mMutex);
    Write({{"note", what}});
}

void ContractBook::Refused(const std::string& why) {
    const std::lock_guard lock(mMutex);
    Write({{"refused", why}});
}

void ContractBook::Write(const nlohmann::ordered_json& line) {
    if (mFile.IsOpen()) {
        mFile.Write(line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
    }
}

ContractBook& Book() {
    static auto* const sBook = new ContractBook;
    return *sBook;
}

}  // namespace simhost::contract
