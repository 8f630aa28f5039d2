// What a performer works with: everything that a step can act on, and where it tells what came of it.
#pragma once

#include <cstdint>
#include <string>

#include "doubles/host/Rules.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/plugin/MessageDriver.h"
#include "simhost/plugin/PluginModule.h"
#include "simhost/report/Transcript.h"
#include "simhost/run/Panel.h"
#include "simhost/scenario/Step.h"

namespace simhost {

class Performance {
  public:
    // Of one step; lives no longer than any of the arguments. The members throw HostLost where a message is sent.
    Performance(const Step& step, MessageDriver& theDriver, PluginModule& thePlugin, Panel& thePanel,
                const RunFolder& theFolder, const Transcript& transcript)
        : driver(theDriver),
          plugin(thePlugin),
          panel(thePanel),
          folder(theFolder),
          mStep(step),
          mTranscript(transcript) {}

    MessageDriver& driver;
    PluginModule& plugin;
    Panel& panel;
    const RunFolder& folder;

    // A line for the transcript.
    void Tell(const std::string& line) const;
    // Tells the message and its answer; another answer than the step expects breaks a rule.
    void NoteAnswer(const std::string& message, std::int32_t answer) const;
    // The host would not send this.
    void NotReached(const std::string& why) const { Broken(Rule::kNotReached, why); }
    // The text gets the step's place in front.
    void Broken(Rule rule, const std::string& text) const;

  private:
    const Step& mStep;
    const Transcript& mTranscript;
};

}  // namespace simhost
