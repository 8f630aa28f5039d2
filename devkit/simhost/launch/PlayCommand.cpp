#include "simhost/launch/PlayCommand.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
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
#include "simhost/launch/RunFolder.h"
#include "simhost/launch/Selection.h"
#include "simhost/report/CallLines.h"
#include "simhost/report/CallsOfRun.h"
#include "simhost/report/JUnit.h"
#include "simhost/report/LastRun.h"
#include "simhost/report/Summary.h"
#include "simhost/report/WholeFile.h"

namespace simhost {

namespace {

constexpr int kPassed = 0;
constexpr int kFailed = 1;
constexpr int kNotPlayed = 2;

// How the person calls this program: a script that starts it says so.
std::string ProgramName() {
    wchar_t name[MAX_PATH] = L"";
    const DWORD length = GetEnvironmentVariableW(L"SIMHOST_COMMAND", name, MAX_PATH);
    return length == 0 || length >= MAX_PATH ? "simhost" : Utf8(std::wstring_view(name, length));
}

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
            return kPassed;
        }
        Selection selection = SelectCases(Files(failed), mOptions.cases);
        if (mOptions.onlyFailed) {
            KeepOnly(failed, selection);
            if (selection.cases.empty() && selection.unplayable.empty()) {
                std::printf("Nothing of that failed the last time, so nothing is played.\n");
                return kPassed;
            }
        }
        mSeveral = selection.cases.size() > 1;
        CheckSelection(mOptions, selection);
        FindPlugins(selection);
        for (const Unplayable& unplayable : selection.unplayable) {
            NotPlayed(
                {unplayable.file, "", Utf8(unplayable.file.filename().wstring()), "", false, false, unplayable.lines});
        }
        for (std::size_t i = 0; i < selection.cases.size() && !mIsCancelled; ++i) {
            PlayCase(*selection.cases[i].file, selection.cases[i].name);
        }
        Conclude();
        return mWorst;
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
        std::erase_if(selection.cases, [&](const SelectedCase& selected) {
            const auto file = std::filesystem::absolute(selected.file->Path()).lexically_normal();
            // Of a file that could not be read nobody knew the cases.
            return std::none_of(failed.begin(), failed.end(), [&](const FailedCase& one) {
                return one.file == file && (one.caseName == selected.name || one.caseName.empty());
            });
        });
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
                selection.unplayable.push_back(
                    {selected.file->Path(), {selected.file->PlaceOf(selected.name) + ": " + error.what()}});
                return true;
            }
        });
    }

    void NotPlayed(RunOutcome outcome) {
        for (const std::string& line : outcome.complaints) {
            std::fprintf(stderr, "simhost: %s\n", line.c_str());
        }
        mWorst = kNotPlayed;
        mOutcomes.push_back(std::move(outcome));
    }

    void PlayCase(const ScenarioFile& file, const std::string& name) {
        RunOutcome outcome{file.Path(), name, file.PlaceOf(name), file.TitleOf(name)};
        const auto began = std::chrono::steady_clock::now();
        EventFile events(mOptions.jsonLines, !mOptions.noWait);
        std::vector<std::string> complaints;  // with whole paths
        try {
            const RunOptions run = OptionsFor(file, name, events.Path());
            const Verdict verdict = RunCase(file, name, run);
            KeepRecord(outcome.name, run.record);
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
            TellLoss(outcome, lines);
        }
        if (!mOptions.accept.empty() && outcome.played && AcceptRun(file, name, complaints, lines)) {
            outcome.passed = true;
            outcome.complaints.clear();
        }
        Tell(std::move(outcome));
        std::fflush(stdout);
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

    // In the place of the host's process, which ended within a step.
    void TellLoss(const RunOutcome& outcome, const std::vector<nlohmann::ordered_json>& lines) const {
        if (TellsPeople() && mOptions.tell.verbosity != Verbosity::kQuiet) {
            const bool colour = UsesColour(mOptions.tell.colour);
            for (const PluginCoreCall& call : CallsOfOpenStep(lines)) {
                for (const std::string& line : LinesOf(call, [](const std::string& text) { return text; })) {
                    std::printf("      %s\n", ShowControlCharacters(line).c_str());
                }
            }
            for (const std::string& complaint : outcome.complaints) {
                std::printf("%s\n", Coloured("  ! " + complaint, Tone::kBad, colour).c_str());
            }
            std::printf("%s\n", Coloured("  failed", Tone::kBad, colour).c_str());
        }
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

    void Tell(RunOutcome outcome) {
        if (!outcome.played) {
            NotPlayed(std::move(outcome));
            return;
        }
        for (const std::string& complaint : outcome.complaints) {
            std::fprintf(stderr, "FAILED %s%s\n", mSeveral ? (outcome.name + ": ").c_str() : "", complaint.c_str());
        }
        mWorst = std::max(mWorst, outcome.passed ? kPassed : kFailed);
        if (mSeveral && TellsPeople()) {
            std::printf("%s%s: %s\n", mOptions.tell.verbosity == Verbosity::kQuiet ? "" : "\n", outcome.name.c_str(),
                        outcome.passed ? "passed" : "failed");
        }
        mOutcomes.push_back(std::move(outcome));
    }

    // Standard output is for the machine when that asks for it.
    bool TellsPeople() const { return mOptions.jsonLines != L"-"; }

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
        tell.verbosity = TellsPeople() ? tell.verbosity : Verbosity::kQuiet;
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

    // Several runs share one file: their records are put together there, by name.
    void KeepRecord(const std::string& place, const std::filesystem::path& record) {
        if (!mSeveral || record.empty()) {
            return;
        }
        std::ifstream stream(record, std::ios::binary);
        mRecords[place] = nlohmann::ordered_json::parse(stream);
    }

    void Conclude() const {
        if (!mRecords.empty()) {
            WriteWholeFile(mOptions.record, mRecords.dump(2) + "\n");
        }
        if (!mOptions.junit.empty()) {
            WriteWholeFile(mOptions.junit, AsJUnit(mOutcomes));
        }
        if (mOptions.repeatedBy.empty()) {
            // Of what was not played now nothing new is known.
            RememberFailures(mOutcomes, mOptions.onlyFailed || mIsCancelled);
        }
        if (!TellsPeople()) {
            return;
        }
        const char* const before = mOptions.tell.verbosity == Verbosity::kQuiet || mSeveral ? "" : "\n";
        if (mWorst == kPassed) {
            std::printf(
                "%sPassed: everything came as expected, and %s.\n", before,
                mOptions.variation.until.empty() ? "nothing is left over" : "what is left over was not looked at");
        }
        for (const std::string& line : SummaryOf(mOutcomes, ProgramName(), mOptions.repeatedBy, OptionsToRepeat())) {
            std::printf("%s\n", line.c_str());
        }
    }

    std::vector<std::string> OptionsToRepeat() const {
        std::vector<std::string> options;
        if (!mOptions.plugin.empty()) {
            options.insert(options.end(), {"--plugin", Utf8(mOptions.plugin.generic_wstring())});
        }
        if (!mOptions.pluginCore.empty()) {
            options.insert(options.end(), {"--plugincore", Utf8(mOptions.pluginCore.generic_wstring())});
        }
        const auto addNumber = [&](const char* option, const std::optional<std::int64_t>& number) {
            if (number) {
                options.insert(options.end(), {option, std::to_string(*number)});
            }
        };
        addNumber("--time-limit", mOptions.timeLimitSeconds);
        addNumber("--step-time-limit", mOptions.stepTimeLimitSeconds);
        if (mOptions.variation.seed) {
            options.insert(options.end(), {"--seed", std::to_string(*mOptions.variation.seed)});
        }
        return options;
    }

    const PlayOptions& mOptions;
    bool mSeveral = false;  // more than one run, so each is told by name
    bool mIsCancelled = false;
    int mWorst = kPassed;
    std::vector<RunOutcome> mOutcomes;
    nlohmann::ordered_json mRecords;
};

}  // namespace

int Play(const PlayOptions& options) {
    try {
        return Playlist(options).Play();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simhost: %s\n", error.what());
        return kNotPlayed;
    }
}

}  // namespace simhost
