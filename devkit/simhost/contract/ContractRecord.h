// The file that a ContractBook keeps, read by another process.
//
// Thread: any.
#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "simhost/contract/ContractBook.h"

namespace simhost::contract {

struct EntryCall {
    std::string entry;
    int call = 0;
};

struct ContractRecord {
    std::set<ClauseId> tried;
    std::vector<Finding> findings;
    // The call that had not ended when the file was written last.
    std::optional<EntryCall> underWay;
    bool isDone = false;
    std::vector<std::string> notes;  // what was not done
    std::string refusal;             // why nothing could be tried; else empty
};

// Empty when there is no such file: the process was lost before it began.
ContractRecord ReadContractRecord(const std::filesystem::path& file);

}  // namespace simhost::contract
