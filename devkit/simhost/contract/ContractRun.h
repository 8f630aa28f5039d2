// Checks a library against the contract: a working day through the plug-in, and all probes, each in a process of its
// own.
//
// Thread: main.
#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "simhost/contract/ContractBook.h"

namespace simhost::contract {

struct Sighting {
    std::string run;  // the day, or the probe
    Finding finding;
};

struct ContractResult {
    std::set<ClauseId> tried;
    std::vector<Sighting> sightings;
    // What could not be done, in words: for example that there is no plug-in for the day.
    std::vector<std::string> notes;

    bool IsBroken(ClauseId clause) const;
};

// `plugin`: empty for the one beside this program. Throws std::runtime_error in words when the file is no library that
// can be checked.
ContractResult CheckContract(const std::filesystem::path& library, const std::filesystem::path& plugin);

}  // namespace simhost::contract
