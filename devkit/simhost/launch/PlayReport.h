// What a command that plays says of its runs, and what it keeps of them: record, JUnit, the memory of what failed.
//
// Thread: main.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simhost/launch/PlayCommand.h"
#include "simhost/report/RunOutcome.h"

namespace simhost {

class PlayReport {
  public:
    // Exit codes.
    static constexpr int kPassed = 0;
    static constexpr int kFailed = 1;
    static constexpr int kNotPlayed = 2;

    // `several`: more than one run, so each is told by name. Lives no longer than the options.
    PlayReport(const PlayOptions& options, bool several) : mOptions(options), mSeveral(several) {}

    // Standard output is for the machine when that asks for it.
    bool TellsPeople() const { return mOptions.jsonLines != L"-"; }

    // In the place of the host's process, which ended within a step. `lines` are those of the run.
    void TellLoss(const RunOutcome& outcome, const std::vector<nlohmann::ordered_json>& lines) const;
    // The run is over, or could not be played.
    void Add(RunOutcome outcome);
    // Several runs share one file: their records are put together there, by name.
    void KeepRecord(const std::string& run, const std::filesystem::path& record);
    // Writes what is kept and says the rest; answers the exit code. `wasPart`: of what was not played nothing new is
    // known. Throws std::runtime_error for what cannot be written.
    int Conclude(bool wasPart) const;

  private:
    void Remember(bool wasPart) const;
    std::vector<std::string> OptionsToRepeat() const;

    const PlayOptions& mOptions;
    bool mSeveral;
    int mWorst = kPassed;
    std::vector<RunOutcome> mOutcomes;
    nlohmann::ordered_json mRecords;
};

}  // namespace simhost
