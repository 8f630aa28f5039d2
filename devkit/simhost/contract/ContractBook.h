// What was seen of each clause: whether it was tried, and each time it was broken. May keep a record in a file,
// written as things happen: a process that is lost leaves what it saw, and which entry was under way.
//
// Thread: any; a library may break a clause on a thread of its own.
#pragma once

#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>
#include <vector>

#include "doubles/common/Thread.h"
#include "simhost/contract/Clauses.h"
#include "simhost/report/LineFile.h"

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

    // Whether anything of the clause was found.
    bool HasBroken(ClauseId clause) const;
    // Those since the last call.
    std::vector<Finding> TakeNew();

    // Forgets all findings, so that the same are told anew: the next library begins.
    void ForgetFindings();

    // From now on everything is written to the file, a line of JSON each; see ContractRecord. Throws
    // std::runtime_error.
    void KeepIn(const std::filesystem::path& file);
    // A call of an entry begins and ends.
    void Begin(const std::string& entry, int call);
    void End();
    // The process has come to its planned end.
    void Done();
    // Something was not done, in words.
    void Note(const std::string& what);
    // Nothing could be tried, or not to the end.
    void Refused(const std::string& why);

  private:
    void Write(const nlohmann::ordered_json& line);

    mutable Mutex mMutex;
    std::set<ClauseId> mTried;
    std::vector<Finding> mFindings;
    std::size_t mTaken = 0;
    LineFile mFile;
};

// The one of this process.
ContractBook& Book();

}  // namespace simhost::contract
