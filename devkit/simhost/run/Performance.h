// What a performer works with: everything that a step can act on, and where it tells what came of it.
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "doubles/host/Rules.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/plugin/MessageDriver.h"
#include "simhost/plugin/PluginModule.h"
#include "simhost/report/RunReport.h"
#include "simhost/run/Panel.h"
#include "simhost/scenario/Step.h"

namespace simhost {

class Performance {
  public:
    // Of one step; lives no longer than any of the arguments. The members throw HostLost where a message is sent.
    Performance(const Step& step, MessageDriver& theDriver, PluginModule& thePlugin, Panel& thePanel,
                const RunFolder& theFolder, RunReport& theReport, std::function<void(const Step& step)> play)
        : driver(theDriver),
          plugin(thePlugin),
          panel(thePanel),
          folder(theFolder),
          report(theReport),
          mStep(step),
          mPlay(std::move(play)) {}

    MessageDriver& driver;
    PluginModule& plugin;
    Panel& panel;
    const RunFolder& folder;
    RunReport& report;

    // What came of the step, as it would be written under that key in a scenario.
    void Observed(const std::string& key, nlohmann::ordered_json value) const {
        report.Observed(key, std::move(value));
    }
    // Of the step, as broken rules name it.
    const std::string& Place() const { return mStep.place; }
    // A line for the transcript.
    void Tell(const std::string& line) const;
    // Plays another step within this one, which must reach the plug-in no more itself.
    void Play(const Step& step) const { mPlay(step); }
    // Tells the message and its answer; another answer than the step expects breaks a rule.
    void NoteAnswer(const std::string& message, std::int32_t answer) const;
    // The host would not send this.
    void NotReached(const std::string& why) const { Broken(Rule::kNotReached, why); }
    // The text gets the step's place in front. People read `lines` instead, if there are any.
    void Broken(Rule rule, const std::string& text, std::vector<std::string> lines = {}) const;

  private:
    const Step& mStep;
    std::function<void(const Step& step)> mPlay;
};

}  // namespace simhost
