#include "support/log/RecordingLogSink.h"

#include <algorithm>
#include <mutex>
#include <ostream>

#include "doubles/common/OwnMemory.h"
#include "doubles/common/Thread.h"
#include "support/isolation/BeforeEachTest.h"
#include "support/LogSink.h"

namespace {

struct Record {
    Mutex mutex;  // any thread may log
    std::vector<RecordedLine> lines;
    RecordedEnd end = RecordedEnd::kNone;
};

// Made at the first use: objects of other files may log before this file's own are constructed.
Record& TheRecord() {
    static Record record;
    return record;
}

const BeforeEachTest kReset(ClearRecordedLog);

}  // namespace

void WriteLogLine(std::int32_t level, const char* text) noexcept {
    const OwnMemory own;
    Record& record = TheRecord();
    const std::lock_guard<Mutex> lock(record.mutex);
    record.lines.push_back({level, text});
}

void EndLog(bool processEnds) noexcept {
    const OwnMemory own;
    TheRecord().end = processEnds ? RecordedEnd::kProcessEnds : RecordedEnd::kModuleIsUnloaded;
}

std::ostream& operator<<(std::ostream& stream, const RecordedLine& line) {
    return stream << line.level << " \"" << line.text << '"';
}

std::vector<RecordedLine> RecordedLog() {
    Record& record = TheRecord();
    const std::lock_guard<Mutex> lock(record.mutex);
    return record.lines;
}

std::vector<std::string> RecordedTexts() {
    std::vector<std::string> texts;
    for (const RecordedLine& line : RecordedLog()) {
        texts.push_back(line.text);
    }
    return texts;
}

int CountRecorded(std::string_view text) {
    Record& record = TheRecord();
    const std::lock_guard<Mutex> lock(record.mutex);
    return static_cast<int>(std::count_if(record.lines.begin(), record.lines.end(),
                                          [text](const RecordedLine& line) { return line.text == text; }));
}

RecordedEnd EndOfRecordedLog() { return TheRecord().end; }

void ClearRecordedLog() {
    Record& record = TheRecord();
    const std::lock_guard<Mutex> lock(record.mutex);
    record.end = RecordedEnd::kNone;
    std::vector<RecordedLine>().swap(record.lines);
}
