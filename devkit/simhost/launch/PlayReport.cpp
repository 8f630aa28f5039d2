#include "simhost/launch/PlayReport.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/report/CallLines.h"
#include "simhost/report/CallsOfRun.h"
#include "simhost/report/JUnit.h"
#include "simhost/report/LastRun.h"
#include "simhost/report/Summary.h"
#include "simhost/report/Transcript.h"
#include "simhost/report/WholeFile.h"

namespace simhost {

namespace {

// How the person calls this program: a script that starts it says so.
std::string ProgramName() {
    wchar_t name[MAX_PATH] = L"";
    const DWORD length = GetEnvironmentVariableW(L"SIMHOST_COMMAND", name, MAX_PATH);
    return length == 0 || length >= MAX_PATH ? "simhost" : Utf8(std::wstring_view(name, length));
}

}  // namespace

void PlayReport::TellLoss(const RunOutcome& outcome, const std::vector<nlohmann::ordered_json>& lines) const {
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

void PlayReport::Add(RunOutcome outcome) {
    if (!outcome.played) {
        for (const std::string& line : outcome.complaints) {
            std::fprintf(stderr, "simhost: %s\n", line.c_str());
        }
        mWorst = kNotPlayed;
        mOutcomes.push_back(std::move(outcome));
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
    std::fflush(stdout);
}

void PlayReport::KeepRecord(const std::string& run, const std::filesystem::path& record) {
    if (!mSeveral || record.empty()) {
        return;
    }
    std::ifstream stream(record, std::ios::binary);
    mRecords[run] = nlohmann::ordered_json::parse(stream);
}

int PlayReport::Conclude(bool wasPart) const {
    if (!mRecords.empty()) {
        WriteWholeFile(mOptions.record, mRecords.dump(2) + "\n");
    }
    if (!mOptions.junit.empty()) {
        WriteWholeFile(mOptions.junit, AsJUnit(mOutcomes));
    }
    if (mOptions.repeatedBy.empty()) {
        Remember(wasPart);
    }
    if (!TellsPeople()) {
        return mWorst;
    }
    const char* const before = mOptions.tell.verbosity == Verbosity::kQuiet || mSeveral ? "" : "\n";
    if (mWorst == kPassed) {
        std::printf("%sPassed: everything came as expected, and %s.\n", before,
                    mOptions.variation.until.empty() ? "nothing is left over" : "what is left over was not looked at");
    }
    for (const std::string& line : SummaryOf(mOutcomes, ProgramName(), mOptions.repeatedBy, OptionsToRepeat())) {
        std::printf("%s\n", line.c_str());
    }
    return mWorst;
}

void PlayReport::Remember(bool wasPart) const {
    const bool isWhole = mOptions.variation.until.empty();
    std::vector<RunOutcome> known = mOutcomes;
    if (!isWhole) {
        // What comes after may fail as it did.
        std::erase_if(known, [](const RunOutcome& outcome) { return outcome.passed; });
    }
    RememberFailures(known, wasPart || !isWhole);
}

std::vector<std::string> PlayReport::OptionsToRepeat() const {
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

}  // namespace simhost
