// Plays a scenario's steps to the plug-in and has each checked.
#pragma once

#include "simhost/checks/MessagingChecks.h"
#include "simhost/checks/StepChecks.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/plugin/MessageDriver.h"
#include "simhost/plugin/PluginModule.h"
#include "simhost/report/RunReport.h"
#include "simhost/run/Panel.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

class ScenarioPlayer {
  public:
    // Prepares the host and loads the plug-in. Throws std::runtime_error in words when that fails.
    ScenarioPlayer(const Scenario& scenario, const RunFolder& folder, RunReport& report);

    // Throws HostLost when an exception leaves the plug-in.
    void PlaySteps();

    PluginModule& Plugin() { return mPlugin; }
    MessageDriver& Driver() { return mDriver; }

  private:
    void PlayAndGoOn(const Step& step);
    void Play(const Step& step);
    void PlayToPlugin(const Step& step);
    void PlayNested(const NestedStep& nested);
    void PerformVerb(const Step& step);
    void PrepareStepEvents(const Step& step);

    const Scenario& mScenario;
    const RunFolder& mFolder;
    RunReport& mReport;
    PluginModule mPlugin;
    StepChecks mChecks;
    Panel mPanel;
    MessageDriver mDriver;
    MessagingChecks mMessaging;
};

}  // namespace simhost
