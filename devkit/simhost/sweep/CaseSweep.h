// The sweep of one case: starts the workers, and goes on behind each fault that one of them is lost to.
#pragma once

#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "simhost/launch/CaseSetting.h"
#include "simhost/sweep/SweepCommand.h"
#include "simhost/sweep/SweepTotals.h"
#include "simhost/watch/HostWatch.h"

namespace simhost::sweep {

class CaseSweep {
  public:
    // `known`: keys of faults that are not played again; those that are played are added. `onFinding` is told of each
    // finding as it is made, with lines that describe it closer.
    using OnFinding = std::function<void(const SweepFinding&, const std::vector<std::string>& details)>;
    CaseSweep(const ScenarioFile& file, std::string caseName, const SweepOptions& options, std::set<std::string>& known,
              SweepTotals& totals, OnFinding onFinding);

    // Throws std::exception when the case cannot be played, Cancelled.
    void Play();

  private:
    // Faults of the plan that a worker is to play.
    struct Part {
        std::size_t first;
        std::size_t last;  // behind the last one
        std::size_t replayEvery;
        bool isRepeated;  // played and counted before: what matters is the run without faults that follows
    };
    // What a worker has told.
    struct Told {
        bool isDone = false;
        bool isPlayable = true;
        std::vector<std::string> complaints;  // of the scenario without faults
        std::size_t begun;                    // behind the last fault that was begun
        bool isEnded = true;                  // that one was
        bool isPlayedAgain = false;           // it was, but not the run without a fault in the same instance
        std::size_t replayed;                 // faults before this one are followed by a run without faults
    };

    void PlayPart(const Part& part);
    void Read(const nlohmann::ordered_json& line, const Part& part, Told& told);
    void CountPlan(const nlohmann::ordered_json& counted);
    void Count(const nlohmann::ordered_json& end, bool isRepeated);
    void GoOnAfter(const Part& part, const Told& told, const HostEnd& end);
    // The fault within which the process was lost, or the run without faults behind it.
    void FindLost(const nlohmann::ordered_json& fault, bool isPlayedAgain, const std::vector<std::string>& seen);
    void Find(const nlohmann::ordered_json& fault, const std::vector<std::string>& texts,
              const std::vector<std::string>& details = {});
    std::vector<std::wstring> ArgumentsFor(const Part& part) const;
    RunOptions OptionsOfRun() const;

    const ScenarioFile& mFile;
    std::string mCase;
    const SweepOptions& mOptions;
    std::set<std::string>& mKnown;
    SweepTotals& mTotals;
    OnFinding mOnFinding;
    CaseSetting mSetting;
    std::filesystem::path mResults;
    std::filesystem::path mKnownFile;
    std::deque<Part> mParts;
    bool mIsFresh = true;  // nothing was played in the folder yet
    bool mIsCounted = false;
    bool mIsInstanceTold = false;
    std::map<std::size_t, nlohmann::ordered_json> mFaults;  // begun so far, by their place in the plan
};

}  // namespace simhost::sweep
