// Plays a scenario's steps to the plug-in and has each checked.
#pragma once

#include <string>

#include "simhost/checks/MessagingChecks.h"
#include "simhost/checks/StepChecks.h"
#include "simhost/report/Transcript.h"
#include "simhost/run/Panel.h"
#include "simhost/run/PluginModule.h"
#include "simhost/run/RunFolder.h"
#include "simhost/run/StepSender.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

class ScenarioPlayer {
  public:
    // Prepares the host and loads the plug-in. Throws std::runtime_error in words when that fails.
    ScenarioPlayer(const Scenario& scenario, const RunFolder& folder, const Transcript& transcript);

    void PlaySteps();

    // The message that is being handled, and the step that it belongs to, for whoever reports a crash.
    std::string WhereItIs() const;

  private:
    void Perform(const Step& step);
    void PerformMessage(const Step& step);
    void PerformDialog(const Step& step);
    void PerformCheck(const Step& step);
    void SendNested(const NestedStep& nested);
    void PrepareStepEvents(const Step& step);

    const Scenario& mScenario;
    const RunFolder& mFolder;
    const Transcript& mTranscript;
    PluginModule mPlugin;
    StepChecks mChecks;
    Panel mPanel;
    StepSender mSender;
    MessagingChecks mMessaging;
    const Step* mStep = nullptr;
};

}  // namespace simhost
