#include "simhost/launch/EventFile.h"

#include <windows.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "simhost/report/EventLog.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::filesystem::path FileForOneRun() {
    return std::filesystem::temp_directory_path() /
           (L"simhost-events-" + std::to_wstring(GetCurrentProcessId()) + L".jsonl");
}

bool Holds(const std::vector<Json>& events, const char* kind) {
    return !events.empty() && events.front().value("event", "") == kind;
}

}  // namespace

EventFile::EventFile(const std::filesystem::path& asked)
    : mForOneRun(asked.empty() || asked == L"-"),
      mPrinted(asked == L"-"),
      mPath(mForOneRun ? FileForOneRun() : std::filesystem::absolute(asked)) {
    std::error_code ignored;
    if (mForOneRun) {
        std::filesystem::remove(mPath, ignored);
    }
    const EventLog canBeWritten(mPath);
    mOffset = static_cast<std::size_t>(std::filesystem::file_size(mPath, ignored));
}

EventFile::~EventFile() {
    std::error_code ignored;
    if (mForOneRun) {
        std::filesystem::remove(mPath, ignored);
    }
}

std::vector<Json> EventFile::Complete(const RunOutcome& outcome) const {
    EndLine(mPath);
    {
        EventLog log(mPath);
        if (!Holds(ReadEvents(mPath, mOffset), "run_begin")) {
            log.Write("run_begin", {{"run", outcome.name}, {"title", outcome.title}, {"steps", 0}});
        }
        log.Write("run_end", {{"run", outcome.name},
                              {"played", outcome.played},
                              {"passed", outcome.passed},
                              {"complaints", outcome.complaints},
                              {"seconds", outcome.seconds}});
    }
    if (mPrinted) {
        std::ifstream stream(mPath, std::ios::binary);
        const std::string lines(std::istreambuf_iterator<char>(stream), {});
        std::fwrite(lines.data(), 1, lines.size(), stdout);
        std::fflush(stdout);
    }
    return ReadEvents(mPath, mOffset);
}

}  // namespace simhost
