// Checks, after each message, what the plug-in did with the messaging library and what the panel was told, and prints
// it.
#pragma once

#include "simhost/checks/PluginCoreCalls.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/report/Transcript.h"
#include "simhost/run/Panel.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

class MessagingChecks {
  public:
    MessagingChecks(const RunFolder& folder, Transcript& transcript, Panel& panel)
        : mFolder(folder), mTranscript(transcript), mPanel(panel), mCalls(folder.BusCalls()) {}

    // After a step's message. Broken rules go into the host's book.
    void Check(const Step& step);

  private:
    void CheckLoads(const Step& step);
    void CheckCalls(const Step& step);
    void CheckPanelEvents(const Step& step);

    const RunFolder& mFolder;
    Transcript& mTranscript;
    Panel& mPanel;
    CallLog mCalls;
};

}  // namespace simhost
