#include "simhost/launch/PlayCommand.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/launch/Acceptance.h"
#include "simhost/launch/Cancellation.h"
#include "simhost/launch/CaseRun.h"
#include "simhost/launch/EventFile.h"
#include "simhost/launch/Leftovers.h"
#include "simhost/launch/OwnFolder.h"
#include "simhost/launch/PlayChecks.h"
#include "simhost/launch/PlayReport.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/launch/Selection.h"
#include "simhost/report/CallsOfRun.h"
#include "simhost/report/LastRun.h"
#include "simhost/report/WholeFile.h"

namespace simhost {

namespace {

// Plays what the options name, and keeps what came of it.
class Playlist {
  public:
    explicit Playlist(const PlayOptions& options) : mOptions(options) {}

    int Play() {
        ListenForCancellation();
        CheckFilesOf(mOptions);
        const std::vector<FailedCase> failed = mOptions.onlyFailed ? FailedBefore() : std::vector<FailedCase>();
        if (mOptions.onlyFailed && failed.empty()) {
            std::printf("Nothing failed the last time, so nothing is played.\n");
            return PlayReport::kPassed;
        }
        Selection selection = SelectCases(Files(failed), mOptions.cases);
        if (mOptions.onlyFailed) {
            KeepOnly(failed, selection);
            if (selection.cases.empty() && selection.unplayable.empty()) {
                std::printf("Nothing of that failed the last time, so nothing is played.\n");
                return PlayReport::kPassed;
            }
        }
        mSeveral = selection.cases.size() > 1;
        mReport.emplace(mOptions, mSeveral);
        CheckSelection(mOptions, selection);
        FindPlugins(selection);
        for (const Unplayable& unplayable : selection.unplayable) {
            mReport->Add(
                {unplayable.file, unplayable.caseName, unplayable.Place(), "", false, false, unplayable.lines});
        }
        for (std::size_t i = 0; i < selection.cases.size() && !mIsCancelled; ++i) {
            PlayCase(*selection.cases[i].file, selection.cases[i].name);
        }
        return mReport->Conclude(mOptions.onlyFailed || mIsCancelled);
    }

  private:
    static std::vector<FailedCase> FailedBefore() {
        auto failed = FailedLastTime();
        if (!failed) {
            throw std::runtime_error("nothing has been played yet, so nobody knows what failed");
        }
        return *failed;
    }

    std::vector<std::filesystem::path> Files(const std::vector<FailedCase>& failed) const {
        std::vector<std::filesystem::path> named = mOptions.scenarios;
        for (std::size_t i = 0; mOptions.scenarios.empty() && i < failed.size(); ++i) {
            named.push_back(failed[i].file);
        }
        return ScenariosNamed(named);
    }

    // Takes a case back out of the list when it can be played and did not fail.
    static void KeepOnly(const std::vector<FailedCase>& failed, Selection& selection) {
        ForgetFailures(CasesThatAreGone(failed, selection));
        std::erase_if(selection.cases, [&](const SelectedCase& selected) {
            // Of a file that could not be read nobody knew the cases.
            return std::none_of(failed.begin(), failed.end(), [&](const FailedCase& one) {
                return IsOf(selected, one) && (one.caseName == selected.name || one.caseName.empty());
            });
        });
    }

    // The file is there and can be read, and has no such case.
    static std::vector<FailedCase> CasesThatAreGone(const std::vector<FailedCase>& failed, const Selection& selection) {
        std::vector<FailedCase> gone;
        std::copy_if(failed.begin(), failed.end(), std::back_inserter(gone), [&](const FailedCase& one) {
            const auto of = std::find_if(selection.cases.begin(), selection.cases.end(),
                                         [&](const SelectedCase& selected) { return IsOf(selected, one); });
            return of != selection.cases.end() && !one.caseName.empty() &&
                   std::ranges::find(of->file->Cases(), one.caseName) == of->file->Cases().end();
        });
        return gone;
    }

    static bool IsOf(const SelectedCase& selected, const FailedCase& one) {
        return std::filesystem::absolute(selected.file->Path()).lexically_normal() == one.file;
    }

    // Takes cases back out of the list whose plug-in is not there.
    void FindPlugins(Selection& selection) const {
        std::erase_if(selection.cases, [&](const SelectedCase& selected) {
            try {
                RunOptions run;
                run.plugin = mOptions.plugin;
                PluginFileOf(*selected.file, selected.name, run);
                return false;
            } catch (const std::runtime_error& error) {
                selection.unplayable.push_back({selected.file->Path(),
                                                selected.name,
                                                {selected.file->PlaceOf(selected.name) + ": " + error.what()}});
                return true;
            }
        });
    }

    void PlayCase(const ScenarioFile& file, const std::string& name) {
        RunOutcome outcome{file.Path(), name, file.PlaceOf(name), file.TitleOf(name)};
        const auto began = std::chrono::steady_clock::now();
        EventFile events(mOptions.jsonLines, !mOptions.noWait);
        std::vector<std::string> complaints;  // with whole paths
        try {
            const RunOptions run = OptionsFor(file, name, events.Path());
            const Verdict verdict = RunCase(file, name, run);
            mReport->KeepRecord(outcome.name, run.record);
            outcome.played = true;
            outcome.passed = verdict.passed;
            complaints = verdict.complaints;
            outcome.complaints = Shortened(complaints, run);
        } catch (const Cancelled& cancelled) {
            // What was played before is kept.
            mIsCancelled = true;
            outcome.complaints = {cancelled.what()};
        } catch (const ScenarioError& error) {
            outcome.complaints = error.Lines();
        } catch (const std::exception& error) {
            outcome.complaints = {error.what()};
        }
        outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
        const std::vector<nlohmann::ordered_json> lines = Complete(events, outcome);
        outcome.failed = outcome.passed ? std::nullopt : FirstFailedStep(lines);
        if (outcome.played && !outcome.passed && WasLostWithinStep(lines)) {
            mReport->TellLoss(outcome, lines);
        }
        if (!mOptions.accept.empty() && outcome.played && AcceptRun(file, name, complaints, lines)) {
            outcome.passed = true;
            outcome.complaints.clear();
        }
        mReport->Add(std::move(outcome));
    }

    // A run whose lines do not arrive counts as not played.
    static std::vector<nlohmann::ordered_json> Complete(const EventFile& events, RunOutcome& outcome) {
        try {
            return events.Complete(outcome);
        } catch (const std::runtime_error& error) {
            outcome.played = false;
            outcome.passed = false;
            outcome.complaints = {error.what()};
            return {};
        }
    }

    static std::vector<std::string> Shortened(std::vector<std::string> texts, const RunOptions& run) {
        const Transcript transcript(Utf8(run.workFolder.wstring()), Verbosity::kQuiet, false);
        for (std::string& text : texts) {
            text = transcript.Shorten(text);
        }
        return texts;
    }

    // False when something was observed that no scenario can expect.
    bool AcceptRun(const ScenarioFile& file, const std::string& name, const std::vector<std::string>& complaints,
                   const std::vector<nlohmann::ordered_json>& lines) const {
        const RunOptions run = OptionsFor(file, name, {});
        const RunFolder folder(run.workFolder, PluginFileOf(file, name, run));
        const Placeholders placeholders = folder.PlaceholdersForScenarios();
        const Accepted accepted = AcceptObserved(file.WrittenOut(name, placeholders), placeholders,
                                                 file.UsualPartsOf(name), lines, complaints);
        for (const std::string& refused : Shortened(accepted.refused, run)) {
            std::fprintf(stderr, "simhost: cannot be accepted: %s\n", refused.c_str());
        }
        if (accepted.refused.empty()) {
            WriteWholeFile(mOptions.accept, accepted.scenario.dump(2) + "\n");
            std::printf("What was observed is now expected by %s.\n", Utf8(mOptions.accept.generic_wstring()).c_str());
        }
        return accepted.refused.empty();
    }

    RunOptions OptionsFor(const ScenarioFile& file, const std::string& name,
                          const std::filesystem::path& events) const {
        const std::wstring run = FolderNameOf(file, name);
        const bool kept = !mOptions.workFolder.empty();
        std::filesystem::path folder = kept ? std::filesystem::absolute(mOptions.workFolder)
                                            : FolderOfRuns() / (run + L"-" + std::to_wstring(GetCurrentProcessId()));
        if (kept && mSeveral) {
            ShareFolder(folder);
            folder /= run;
        }
        TellOptions tell = mOptions.tell;
        tell.events = events;
        tell.verbosity = mReport->TellsPeople() ? tell.verbosity : Verbosity::kQuiet;
        return {mOptions.plugin,
                mOptions.pluginCore,
                folder.make_preferred(),
                kept,
                mOptions.record,
                mOptions.timeLimitSeconds,
                mOptions.stepTimeLimitSeconds,
                mOptions.noWait,
                std::move(tell),
                mOptions.variation,
                mOptions.inProcess};
    }

    const PlayOptions& mOptions;
    bool mSeveral = false;  // more than one run, so each is told by name
    bool mIsCancelled = false;
    std::optional<PlayReport> mReport;
};

}  // namespace

int Play(const PlayOptions& options) {
    try {
        return Playlist(options).Play();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simhost: %s\n", error.what());
        return PlayReport::kNotPlayed;
    }
}

}  // namespace simhost
