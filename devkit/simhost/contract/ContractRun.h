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
#include "simhost/contract/ProbeRun.h"

namespace simhost::contract {

// The run through the plug-in, where the library lies under the name that the plug-in looks for.
inline constexpr const char* kDay = "day";

struct Sighting {
    std::string run;  // kDay, or the probe
    Finding finding;
};

struct ContractResult {
    std::set<ClauseId> tried;
    std::vector<Sighting> sightings;
    // What could not be done, in words.
    std::vector<std::string> notes;
    // False when a run was lost that should have been played, and not by the library: then nobody knows the verdict.
    bool isWhole = true;

    bool IsBroken(ClauseId clause) const;
};

// `plugin`: empty for the one beside this program. Throws std::runtime_error in words when one of the files is none
// that the check can be made with, Cancelled when somebody does not want to wait.
ContractResult CheckContract(const std::filesystem::path& library, const std::filesystem::path& plugin,
                             const ProbeLimits& limits);

}  // namespace simhost::contract
