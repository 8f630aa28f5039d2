// Sends what steps send to the plug-in: messages of the host, and the panel's request.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simhost/report/Transcript.h"
#include "simhost/run/MessageDriver.h"
#include "simhost/run/Panel.h"
#include "simhost/run/PluginModule.h"
#include "simhost/run/RegistrationMessages.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

class StepSender {
  public:
    StepSender(PluginModule& plugin, Panel& panel, const Transcript& transcript);

    // Notes a wrong answer, and what cannot be sent. Throws HostLost.
    void Send(const Step& step);

    // False when there is no messaging library for it; that is noted.
    bool OpenPanel(const Step& step);

    // "" while no message is being handled.
    const std::string& CurrentMessage() const { return mDriver.Current(); }

  private:
    void SendInterface(const Step& step);
    void SendUnload(const Step& step);
    void SendNotifications(const Step& step);
    void SendMenu(const Step& step);
    void SendTicksFor(const Step& step);
    void SendCheckedFile(const Step& step);
    void SendPlain(const Step& step);
    void RequestPort(const Step& step);
    void NoteReply(const Step& step, const std::optional<Reply>& reply);
    void NoteAnswer(const Step& step, const std::string& message, std::int32_t answer);

    PluginModule& mPlugin;
    Panel& mPanel;
    const Transcript& mTranscript;
    MessageDriver mDriver;
};

}  // namespace simhost
