// What the process of a sweep tells, line by line in a file, as it goes: it may be lost to any fault.
//
// Lines of that file, JSON objects: {"counted": {kind: number}, "offered": [[kind, mode, number of faults]...],
// "distinct": the same of those that are no repetitions, "planned": of those that are to be played},
// {"instance": why the scenario cannot be played twice to one loaded plug-in, or ""},
// {"begin": index in the plan, "fault": {...}}, {"again": the same index, before the run without a fault that follows
// in the same instance of the plug-in}, {"end": index, ...}, {"replayed": index of the first fault that is not followed
// by a replay yet}, {"replay_failed": [...]}, {"done": true}; {"unplayable": [...]} before all of them.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "simhost/report/LineFile.h"
#include "simhost/sweep/Fault.h"
#include "simhost/sweep/FaultVerdict.h"
#include "simhost/sweep/Plan.h"
#include "simhost/sweep/SweepRun.h"

namespace simhost::sweep {

// The names of the lines that tell why it cannot go on.
constexpr const char* kUnplayable = "unplayable";
constexpr const char* kReplayFailed = "replay_failed";

using Amounts = std::map<std::pair<Kind, Mode>, std::size_t>;

Amounts AmountsOf(const std::vector<PlannedFault>& plan);

struct PlanAmounts {
    std::map<Kind, std::size_t> counted;  // calls in the run without a fault
    Amounts offered;                      // faults
    Amounts distinct;                     // of these, those that are no repetitions
    Amounts planned;                      // of these, those that are to be played
};

struct FaultEnd {
    const SweepRun& run;
    bool hasRunAgain;
    const FaultVerdict& verdict;
    // Where one fault alone is described.
    nlohmann::ordered_json call = nlohmann::ordered_json::array();
    nlohmann::ordered_json left = nlohmann::ordered_json::array();
};

class WorkerResults {
  public:
    explicit WorkerResults(const std::filesystem::path& file);

    void Failed(const char* name, const std::vector<std::string>& complaints);
    void Instance(const std::string& whyNotTwice);
    void Planned(const PlanAmounts& amounts);
    void Begin(std::size_t index, const PlannedFault& planned);
    void Again(std::size_t index);
    void End(std::size_t index, const FaultEnd& end);
    void Replaying(std::size_t first);
    void Replayed(std::size_t next);
    void Done();

  private:
    void Write(const nlohmann::ordered_json& line);

    LineFile mFile;
};

}  // namespace simhost::sweep
