// The calls of one double in the order in which they arrived. A call that arrives while another is being answered
// stands behind it.
//
// Thread: one at a time. Lifetime: the texts that Calls returns stay until its next call; the records are shared.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "doubles/common/CallRecord.h"

namespace doubles {

class CallLog {
  public:
    void Add(std::shared_ptr<const CallRecord> call) { mCalls.push_back(std::move(call)); }

    // The calls as short texts, without those of the entries that are left out.
    const std::vector<std::string>& Calls() const;
    int Count(const std::string& entry) const;
    void Clear() { mCalls.clear(); }

    // Keeps the calls of an entry out of Calls, or shows them again. Count sees them always.
    void LeaveOut(const std::string& entry) { mLeftOut.insert(entry); }
    void Show(const std::string& entry) { mLeftOut.erase(entry); }

  private:
    std::vector<std::shared_ptr<const CallRecord>> mCalls;
    std::set<std::string> mLeftOut;
    mutable std::vector<std::string> mTexts;
};

}  // namespace doubles
