// Checks, after each message, what the plug-in did with the messaging library and what the panel was told, and prints
// it.
#pragma once

#include "simhost/checks/PluginCoreCalls.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/report/RunReport.h"
#include "simhost/run/Panel.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

class MessagingChecks {
  public:
    MessagingChecks(const RunFolder& folder, RunReport& report, Panel& panel)
        : mFolder(folder), mReport(report), mPanel(panel), mCalls(folder.BusCalls()) {}

    // After a step's message. Broken rules go into the host's book.
    void Check(const Step& step);
    // Tells what has come so far when the step cannot go on.
    void TellRest() { mReport.Calls(Library::kMessaging, mCalls.TakeNew()); }

  private:
    void CheckLoads(const Step& step);
    void CheckCalls(const Step& step);
    void CheckPanelEvents(const Step& step);

    const RunFolder& mFolder;
    RunReport& mReport;
    Panel& mPanel;
    CallLog mCalls;
};

}  // namespace simhost
