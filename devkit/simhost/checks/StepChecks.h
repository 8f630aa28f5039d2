// Checks, after each message, what it brought about, and prints it.
#pragma once

#include <chrono>
#include <cstdint>

#include "simhost/checks/BoxWatcher.h"
#include "simhost/checks/PluginCoreCalls.h"
#include "simhost/report/RunReport.h"
#include "simhost/scenario/Scenario.h"
#include "simhost/windows/MainWindow.h"

namespace simhost {

class StepChecks {
  public:
    // Shows the host's window: what is checked includes its being in the foreground.
    explicit StepChecks(RunReport& report) : mReport(report) {}

    // Just before the step's message is sent.
    void Begin(const Step& step);
    // Afterwards. Broken rules go into the host's book.
    void Check(const Step& step);
    // Tells what has come so far when the step cannot go on.
    void TellRest();

  private:
    void CheckCalls(const Step& step);
    std::int64_t SecondsSinceBegin() const;
    void CheckBoxes(const Step& step);
    void CheckHostCalls(const Step& step);
    void CheckForeground(const Step& step);

    RunReport& mReport;
    MainWindow mWindow;
    BoxWatcher mBoxes;
    std::chrono::steady_clock::time_point mBegan;
};

}  // namespace simhost
