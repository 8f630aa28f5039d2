// Plays a scenario's steps to the plug-in and has each checked.
#pragma once

#include <string>

#include "simulated_host/MessagingChecks.h"
#include "simulated_host/Panel.h"
#include "simulated_host/PluginModule.h"
#include "simulated_host/RunFolder.h"
#include "simulated_host/Scenario.h"
#include "simulated_host/StepChecks.h"
#include "simulated_host/StepSender.h"
#include "simulated_host/Transcript.h"

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
