// What was seen of each clause: how often it was tried, and each time it was broken.
//
// Thread: any; a library may break a clause on a thread of its own.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "doubles/common/Thread.h"
#include "simhost/contract/Clauses.h"

namespace simhost::contract {

struct Finding {
    ClauseId clause;
    std::string entry;  // empty when no entry is to blame
    int call;           // the number of the first such call, from 1; 0 for none
    std::string seen;   // values, and the place in the code
};

// As in "GetMenus, call 3: what was seen".
std::string Describe(const Finding& finding);

class ContractBook {
  public:
    void Tried(ClauseId clause);
    // Counts as tried. What was seen of the same entry before is not kept once more.
    void Broken(Finding finding);

    std::int64_t TimesTried(ClauseId clause) const;
    // Those since the last call.
    std::vector<Finding> TakeNew();

  private:
    mutable Mutex mMutex;
    std::map<ClauseId, std::int64_t> mTried;
    std::vector<Finding> mFindings;
    std::size_t mTaken = 0;
};

// The one of this process.
ContractBook& Book();

}  // namespace simhost::contract
