// Checks, after each message, what it brought about, and prints it.
#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "simhost/checks/BoxWatcher.h"
#include "simhost/checks/PluginCoreCalls.h"
#include "simhost/report/Transcript.h"
#include "simhost/scenario/Scenario.h"
#include "simhost/windows/MainWindow.h"

namespace simhost {

class StepChecks {
  public:
    // Shows the host's window: what is checked includes its being in the foreground.
    explicit StepChecks(Transcript& transcript) : mTranscript(transcript) {}

    // Just before the step's message is sent.
    void Begin(const Step& step);
    // Afterwards. Broken rules go into the host's book.
    void Check(const Step& step);

  private:
    void CheckCalls(const Step& step);
    void ShowCalls(const std::vector<PluginCoreCall>& calls);
    std::int64_t SecondsSinceBegin() const;
    void CheckBoxes(const Step& step);
    void CheckHostCalls(const Step& step);
    void CheckForeground(const Step& step);

    Transcript& mTranscript;
    MainWindow mWindow;
    BoxWatcher mBoxes;
    std::chrono::steady_clock::time_point mBegan;
};

}  // namespace simhost
