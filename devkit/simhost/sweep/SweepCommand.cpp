#include "simhost/sweep/SweepCommand.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "doubles/common/Text.h"
#include "simhost/launch/Cancellation.h"
#include "simhost/launch/Selection.h"
#include "simhost/report/WholeFile.h"
#include "simhost/sweep/CaseSweep.h"
#include "simhost/sweep/SweepTotals.h"

namespace simhost::sweep {

namespace {

constexpr int kPassed = 0;
constexpr int kFailed = 1;
constexpr int kNotPlayed = 2;

// How the person calls this program.
std::string Program() {
    const char* const command = std::getenv("SIMHOST_COMMAND");
    return command == nullptr ? "simhost" : command;
}

class Sweeper {
  public:
    explicit Sweeper(const SweepOptions& options) : mOptions(options) {}

    int Sweep() {
        ListenForCancellation();
        const Selection selection = SelectCases(ScenariosNamed(mOptions.scenarios), mOptions.cases);
        for (const Unplayable& unplayable : selection.unplayable) {
            NotPlayable(unplayable.Place(), unplayable.lines.empty() ? "" : unplayable.lines.front());
        }
        for (const SelectedCase& selected : selection.cases) {
            PlayCase(*selected.file, selected.name);
        }
        return Conclude();
    }

  private:
    void PlayCase(const ScenarioFile& file, const std::string& name) {
        const auto began = std::chrono::steady_clock::now();
        const std::int64_t played = mTotals.Played();
        const std::size_t findings = mTotals.findings.size();
        try {
            CaseSweep(
                file, name, mOptions, mKnown, mTotals,
                [&](const SweepFinding& finding, const std::vector<std::string>& details) { Tell(finding, details); })
                .Play();
            ++mTotals.cases;
            mTotals.files.insert(Utf8(file.Path().generic_wstring()));
        } catch (const Cancelled&) {
            throw;
        } catch (const std::exception& error) {
            NotPlayable(file.PlaceOf(name), error.what());
        }
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
        std::printf("%s: %lld faults, %zu with findings, %.1f s\n", file.PlaceOf(name).c_str(),
                    static_cast<long long>(mTotals.Played() - played), mTotals.findings.size() - findings, seconds);
        std::fflush(stdout);
    }

    void NotPlayable(const std::string& place, const std::string& why) {
        mTotals.unplayable.push_back(place + ": " + why);
        std::fprintf(stderr, "simhost: %s cannot be swept: %s\n", place.c_str(), why.c_str());
    }

    static void Tell(const SweepFinding& finding, const std::vector<std::string>& details) {
        if (finding.texts.empty()) {
            std::printf("%s: %s fails, and all is well\n", finding.place.c_str(), finding.operation.c_str());
        }
        for (const std::string& text : finding.texts) {
            std::fprintf(stderr, "FAILED %s: when %s fails: %s\n", finding.place.c_str(), finding.operation.c_str(),
                         text.c_str());
        }
        for (const std::string& detail : details) {
            std::printf("  %s\n", detail.c_str());
        }
        if (!finding.texts.empty()) {
            std::printf("  again: %s sweep %s\n", Program().c_str(), finding.repeat.c_str());
        }
        std::fflush(stdout);
    }

    int Conclude() const {
        for (const std::string& line : LinesOf(mTotals)) {
            std::printf("%s\n", line.c_str());
        }
        if (!mOptions.json.empty()) {
            WriteWholeFile(mOptions.json, AsJson(mTotals).dump(2) + "\n");
        }
        const std::string told = std::to_string(mTotals.Played()) + " faults in " + std::to_string(mTotals.cases) +
                                 (mTotals.cases == 1 ? " case" : " cases");
        if (!mTotals.findings.empty()) {
            std::printf("Failed: %s, %zu with findings.\n", told.c_str(), mTotals.findings.size());
        } else if (mTotals.unplayable.empty() && mTotals.Played() != 0) {
            std::printf("Passed: %s, and the plug-in bore all of them.\n", told.c_str());
        }
        if (mTotals.unplayable.empty() && mTotals.Played() == 0) {
            std::fprintf(stderr, "simhost: there is no such call, so nothing failed\n");
            return kNotPlayed;
        }
        return !mTotals.findings.empty() ? kFailed : mTotals.unplayable.empty() ? kPassed : kNotPlayed;
    }

    const SweepOptions& mOptions;
    std::set<std::string> mKnown;
    SweepTotals mTotals;
};

}  // namespace

int Sweep(const SweepOptions& options) {
    try {
        return Sweeper(options).Sweep();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simhost: %s\n", error.what());
        return kNotPlayed;
    }
}

}  // namespace simhost::sweep
