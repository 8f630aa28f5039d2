#include "simhost/launch/PlayCommand.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/launch/CaseRun.h"
#include "simhost/launch/Selection.h"

namespace simhost {

namespace {

constexpr int kPassed = 0;
constexpr int kFailed = 1;
constexpr int kNotPlayed = 2;

// Plays what the options name, and keeps what came of it.
class Programme {
  public:
    explicit Programme(const PlayOptions& options) : mOptions(options) {}

    int Play() {
        const Selection selection = SelectCases(ScenariosNamed(mOptions.scenarios), mOptions.cases);
        mSeveral = selection.cases.size() > 1;
        for (const Unplayable& unplayable : selection.unplayable) {
            NotPlayed(unplayable.lines);
        }
        for (const SelectedCase& selected : selection.cases) {
            Try([&] { PlayCase(*selected.file, selected.name); });
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
    void Try(const Action& action) {
        try {
            action();
        } catch (const ScenarioError& error) {
            NotPlayed(error.Lines());
        } catch (const std::exception& error) {
            NotPlayed({error.what()});
        }
        std::fflush(stdout);
    }

    void NotPlayed(const std::vector<std::string>& why) {
        for (const std::string& line : why) {
            std::fprintf(stderr, "simhost: %s\n", line.c_str());
        }
        mWorst = kNotPlayed;
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
