// The log sink of the unit tests: keeps every line, so that a test can compare them byte for byte.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

struct RecordedLine {
    std::int32_t level;
    std::string text;

    bool operator==(const RecordedLine&) const = default;
};

// For gtest's failure messages.
std::ostream& operator<<(std::ostream& stream, const RecordedLine& line);

// Every line logged since the start of the test or the last ClearRecordedLog, the oldest first.
std::vector<RecordedLine> RecordedLog();

// The same without the levels.
std::vector<std::string> RecordedTexts();

// How many of the recorded lines have exactly this text.
int CountRecorded(std::string_view text);

// How the log was told to end, since the start of the test or the last ClearRecordedLog.
enum class RecordedEnd { kNone, kModuleIsUnloaded, kProcessEnds };
RecordedEnd EndOfRecordedLog();

// Forgets all recorded lines and gives their memory back.
void ClearRecordedLog();
