#include "support/LogSink.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "LogFolderGuard.h"

// The names that the build gives them here: WriteLogLine is the recording one.
void WriteDiagnosticLogLine(std::int32_t level, const char* text) noexcept;
void EndDiagnosticLog(bool processEnds) noexcept;

namespace {

// As LogMessage does: a frame of its own between the operation and the sink.
void LogFromOwnFrame(std::int32_t level, const char* text) {
    volatile char buffer[512] = {};
    buffer[0] = text[0];
    WriteDiagnosticLogLine(level, text);
    buffer[1] = buffer[0];
}

// No compiler puts what is called through a volatile pointer into its caller: each has a frame of its own.
using LogFunction = void (*)(std::int32_t level, const char* text);
using Operation = void (*)();
const volatile LogFunction Log = &LogFromOwnFrame;

void ThrowingOperation() {
    Log(1, "Entering Throwing");
    throw std::runtime_error("");
}
const volatile Operation Throwing = &ThrowingOperation;

void MiddleOperation() {
    Log(1, "Entering Middle");
    Throwing();
    Log(-1, "Exiting Middle");
}
const volatile Operation Middle = &MiddleOperation;

void CatchingOperation() {
    Log(1, "Entering Catching");
    try {
        Middle();
    } catch (const std::exception&) {
        Log(0, "caught");
    }
    Log(-1, "Exiting Catching");
}
const volatile Operation Catching = &CatchingOperation;

void CatchingInSilenceOperation() {
    Log(1, "Entering CatchingInSilence");
    for (int i = 0; i < 3; ++i) {
        try {
            Middle();
        } catch (const std::exception&) {
        }
    }
    Log(-1, "Exiting CatchingInSilence");
}
const volatile Operation CatchingInSilence = &CatchingInSilenceOperation;

class DiagnosticLogSinkTest : public testing::Test {
  protected:
    LogFolderGuard folder;
};

TEST_F(DiagnosticLogSinkTest, LinesGoToTheLogWithTheirLevels) {
    Log(1, "Entering A");
    Log(0, "in A");
    Log(-1, "Exiting A");
    EXPECT_EQ(folder.Lines(), "T Entering A\r\nT   in A\r\nT Exiting A\r\n");
}

TEST_F(DiagnosticLogSinkTest, IndentationIsBackAfterAnExceptionThroughSeveralOperations) {
    Catching();
    Log(0, "outside");
    EXPECT_EQ(folder.Lines(),
              "T Entering Catching\r\n"
              "T   Entering Middle\r\n"
              "T     Entering Throwing\r\n"
              "T   caught\r\n"
              "T Exiting Catching\r\n"
              "T outside\r\n");
}

TEST_F(DiagnosticLogSinkTest, OperationsThatThrowInALoopDoNotMoveToTheRight) {
    CatchingInSilence();
    std::string turn = "T   Entering Middle\r\nT     Entering Throwing\r\n";
    EXPECT_EQ(folder.Lines(),
              "T Entering CatchingInSilence\r\n" + turn + turn + turn + "T Exiting CatchingInSilence\r\n");
}

TEST_F(DiagnosticLogSinkTest, EndEndsTheRun) {
    Log(0, "a note");
    EndDiagnosticLog(false);
    EXPECT_EQ(folder.Lines(), "T a note\r\nT ==== the run ends: the plug-in is unloaded ====\r\n");
}

}  // namespace
