#include "simhost/launch/PlayCommand.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/launch/CaseRun.h"

namespace simhost {

namespace {

constexpr int kPassed = 0;
constexpr int kFailed = 1;
constexpr int kNotPlayed = 2;

bool IsScenario(const std::filesystem::path& file) {
    const std::wstring name = file.filename().wstring();
    return name.ends_with(L".json") && !name.ends_with(L".schema.json");
}

// By name, so that every run plays in the same order.
std::vector<std::filesystem::path> ScenariosIn(const std::filesystem::path& path) {
    if (!std::filesystem::is_directory(path)) {
        return {path};
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        if (IsScenario(entry.path())) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    if (files.empty()) {
        throw std::runtime_error("there is no scenario in " + Utf8(path.wstring()));
    }
    return files;
}

// Plays what the options name, and keeps what came of it.
class Programme {
  public:
    explicit Programme(const PlayOptions& options) : mOptions(options) {}

    int Play() {
        const std::vector<std::filesystem::path> scenarios = ScenariosIn(mOptions.scenario);
        mSeveral = scenarios.size() > 1;
        for (const std::filesystem::path& scenario : scenarios) {
            Try("", [&] { PlayFile(ScenarioFile(scenario)); });
        }
        WriteRecord();
        if (mWorst == kPassed) {
            std::printf("%sPassed: everything came as expected, and nothing is left over.\n",
                        mOptions.quiet || mSeveral ? "" : "\n");
        }
        return mWorst;
    }

  private:
    template <class Action>
    void Try(const std::string& where, const Action& action) {
        try {
            action();
        } catch (const std::exception& error) {
            std::fprintf(stderr, "simhost: %s%s\n", where.c_str(), error.what());
            mWorst = kNotPlayed;
        }
        std::fflush(stdout);
    }

    void PlayFile(const ScenarioFile& file) {
        const std::vector<std::string> cases =
            mOptions.caseName.empty() ? file.Cases() : std::vector<std::string>{mOptions.caseName};
        mSeveral = mSeveral || cases.size() > 1;
        for (const std::string& name : cases) {
            // Errors of the scenario name their place; others do not.
            Try("", [&] { PlayCase(file, name); });
        }
    }

    void PlayCase(const ScenarioFile& file, const std::string& name) {
        const std::string place = file.PlaceOf(name);
        const RunOptions run = OptionsFor(file, name);
        const Verdict verdict = RunCase(file, name, run);
        KeepRecord(place, run.record);
        for (const std::string& complaint : verdict.complaints) {
            std::fprintf(stderr, "FAILED %s%s\n", mSeveral ? (place + ": ").c_str() : "", complaint.c_str());
        }
        if (!verdict.passed) {
            mWorst = std::max(mWorst, kFailed);
        }
        if (mSeveral) {
            std::printf("%s%s: %s\n", mOptions.quiet ? "" : "\n", place.c_str(), verdict.passed ? "passed" : "failed");
        }
    }

    RunOptions OptionsFor(const ScenarioFile& file, const std::string& name) const {
        const std::wstring run = file.Path().stem().wstring() + (name.empty() ? L"" : L"-" + Wide(name));
        const bool kept = !mOptions.workFolder.empty();
        std::filesystem::path folder = kept ? std::filesystem::absolute(mOptions.workFolder)
                                            : std::filesystem::temp_directory_path() /
                                                  (L"simhost-" + run + L"-" + std::to_wstring(GetCurrentProcessId()));
        if (kept && mSeveral) {
            folder /= run;
        }
        return {mOptions.plugin, folder.make_preferred(),   kept,
                mOptions.record, mOptions.timeLimitSeconds, mOptions.quiet};
    }

    // Several runs share one file: their records are put together there, by name.
    void KeepRecord(const std::string& place, const std::filesystem::path& record) {
        if (!mSeveral || record.empty()) {
            return;
        }
        std::ifstream stream(record, std::ios::binary);
        mRecords[place] = nlohmann::ordered_json::parse(stream);
    }

    void WriteRecord() const {
        if (!mRecords.empty()) {
            std::ofstream(mOptions.record, std::ios::binary | std::ios::trunc) << mRecords.dump(2) << "\n";
        }
    }

    const PlayOptions& mOptions;
    bool mSeveral = false;  // more than one run, so each is told by name
    int mWorst = kPassed;
    nlohmann::ordered_json mRecords;
};

}  // namespace

int Play(const PlayOptions& options) {
    try {
        return Programme(options).Play();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simhost: %s\n", error.what());
        return kNotPlayed;
    }
}

}  // namespace simhost
