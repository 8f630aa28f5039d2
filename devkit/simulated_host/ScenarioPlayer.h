// Plays a scenario's steps to the plug-in and has each checked.
#pragma once

#include <string>

#include "simulated_host/MessageDriver.h"
#include "simulated_host/PluginModule.h"
#include "simulated_host/RunFolder.h"
#include "simulated_host/Scenario.h"
#include "simulated_host/StepChecks.h"
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
    void SendFor(const Step& step);
    void SendNotifications(const Step& step, const std::string& type);
    void SendUnload(const Step& step);
    void SendNested(const NestedStep& nested);
    void NoteAnswer(const Step& step, const std::string& message, std::int32_t answer);
    void ChangeModelBefore(const Step& step);
    void ChangeModelAfter(const Step& step);
    void SaveDocument(const Step& step);
    void PrepareStepEvents(const Step& step);

    const Scenario& mScenario;
    const RunFolder& mFolder;
    const Transcript& mTranscript;
    PluginModule mPlugin;
    MessageDriver mDriver;
    StepChecks mChecks;
    const Step* mStep = nullptr;
};

}  // namespace simhost
