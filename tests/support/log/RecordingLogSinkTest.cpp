#include "support/log/RecordingLogSink.h"

#include <gmock/gmock.h>

#include "support/LogSink.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(RecordingLogSink, StartsEmptyInEveryTest) { EXPECT_THAT(RecordedLog(), IsEmpty()); }

TEST(RecordingLogSink, KeepsLevelAndTextInTheOrderOfTheCalls) {
    WriteLogLine(1, "Entering");
    WriteLogLine(0, "line\n");
    WriteLogLine(-1, "");
    EXPECT_THAT(RecordedLog(),
                ElementsAre(RecordedLine{1, "Entering"}, RecordedLine{0, "line\n"}, RecordedLine{-1, ""}));
    EXPECT_THAT(RecordedTexts(), ElementsAre("Entering", "line\n", ""));
}

TEST(RecordingLogSink, CountsOnlyExactTexts) {
    WriteLogLine(0, "twice");
    WriteLogLine(1, "twice");
    WriteLogLine(0, "twice and more");
    EXPECT_EQ(CountRecorded("twice"), 2);
    EXPECT_EQ(CountRecorded("twic"), 0);
}

TEST(RecordingLogSink, ForgetsWhatItIsToldToForget) {
    WriteLogLine(0, "before");
    ClearRecordedLog();
    WriteLogLine(0, "after");
    EXPECT_THAT(RecordedTexts(), ElementsAre("after"));
}

}  // namespace
