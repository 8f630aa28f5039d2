#include "simhost/launch/EventFile.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

#include "doubles/common/Text.h"
#include "simhost/report/EventLog.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

bool Holds(const std::vector<Json>& events, const char* kind) {
    return !events.empty() && events.front().value("event", "") == kind;
}

}  // namespace

EventFile::EventFile(const std::filesystem::path& asked, bool waits) : mPrinted(asked == L"-") {
    if (asked.empty() || mPrinted) {
        mForOneRun.emplace(L"events", waits);
        mPath = mForOneRun->At(L"events.jsonl");
    } else {
        mPath = std::filesystem::absolute(asked);
    }
    std::error_code ignored;
    const EventLog canBeWritten(mPath);
    mOffset = static_cast<std::size_t>(std::filesystem::file_size(mPath, ignored));
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
        if (log.HasFailed()) {
            throw std::runtime_error("cannot write " + Utf8(mPath.wstring()) + "; lines of it are missing");
        }
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
