#include "simhost/run/StepSender.h"

#include <map>

#include "doubles/host/Host.h"

namespace simhost {

namespace {

constexpr int kMessageIndent = 2;
constexpr std::int32_t kStayLoaded = 1;

struct Notification {
    std::string type;
    bool aboutDocument;
};

// What the host notifies of when the step happens.
Notification NotificationOf(const Step& step) {
    static const std::map<std::string, Notification> sNotifications = {
        {"open", {"AI Document Opened Notifier", true}},
        {"new", {"AI Document New Notifier", true}},
        {"change", {"AI Document Changed Notifier", true}},
        {"about_to_close", {"AI Document About To Close Notifier", true}},
        {"close", {"AI Document Closed Notifier", true}},
        {"save", {"AI Command Notifier: After Save", false}},
        {"save_as", {"AI Command Notifier: After Save As", false}},
        {"font_list_changed", {"AI Font List Changed Notifier", false}},
        {"menu_changed", {"AI Menu Changed Notifier", false}},
        {"application_started", {"AI Application Started Notifier", false}},
        {"application_shutdown", {"AI Application Shutdown Notifier", false}},
    };
    return step.action == "notify" ? Notification{step.notifierType, !step.document.empty()}
                                   : sNotifications.at(step.action);
}

// A notification that comes late still tells the handle that the document had.
void* HandleToTell(const Document& document) {
    return document.handle == nullptr ? document.formerHandle : document.handle;
}

}  // namespace

StepSender::StepSender(PluginModule& plugin, Panel& panel, const Transcript& transcript)
    : mPlugin(plugin), mPanel(panel), mTranscript(transcript), mDriver(plugin) {}

void StepSender::Send(const Step& step) {
    // Whatever is not here is a notification.
    static const std::map<std::string, void (StepSender::*)(const Step&)> sMessages = {
        {"startup", &StepSender::SendInterface},  {"about", &StepSender::SendInterface},
        {"shutdown", &StepSender::SendInterface}, {"unload", &StepSender::SendUnload},
        {"menu_update", &StepSender::SendMenu},   {"menu_go", &StepSender::SendMenu},
        {"tick", &StepSender::SendTicksFor},      {"check_file", &StepSender::SendCheckedFile},
        {"message", &StepSender::SendPlain},
    };
    if (step.action == "panel_request") {
        // No message, so the plug-in may have been unloaded: the bus calls its listener all the same.
        RequestPort(step);
        return;
    }
    if (!mPlugin.IsLoaded()) {
        Host().rules.Broken(Rule::kNotReached, step.place + ": the plug-in is not loaded any more");
        return;
    }
    const auto found = sMessages.find(step.action);
    (this->*(found == sMessages.end() ? &StepSender::SendNotifications : found->second))(step);
}

void StepSender::SendInterface(const Step& step) {
    const char* const selector = step.action == "startup" ? kSPInterfaceStartupSelector
                                 : step.action == "about" ? kSPInterfaceAboutSelector
                                                          : kSPInterfaceShutdownSelector;
    NoteAnswer(step, std::string("\"SP Interface\"/\"") + selector + "\"", mDriver.SendInterface(selector));
}

void StepSender::SendUnload(const Step& step) {
    const std::int32_t answer = mDriver.SendAccess(kSPAccessUnloadSelector);
    NoteAnswer(step, "\"SP Access\"/\"Unload\"", answer);
    if (answer != kStayLoaded) {
        mPlugin.Unload();
    }
}

void StepSender::SendNotifications(const Step& step) {
    HostModel& model = Host().model;
    const auto [type, aboutDocument] = NotificationOf(step);
    void* const data = aboutDocument ? HandleToTell(model.Named(step.document)) : nullptr;
    if (step.action == "close" && step.documentGone) {
        model.Close(step.document);
    }
    const std::string message = "\"AI Notifier\"/\"AI Notify\" " + type + (aboutDocument ? ", " + step.document : "");
    bool sent = false;
    // A copy: a handler may register more.
    const auto notifiers = model.notifiers.Objects();
    for (const auto& [handle, notifier] : notifiers) {
        if (notifier.type == type) {
            sent = true;
            NoteAnswer(step, message, mDriver.SendNotification(reinterpret_cast<void*>(handle), type, data));
        }
    }
    if (!sent) {
        Host().rules.Broken(Rule::kNotReached, step.place + ": nobody is registered for \"" + type + "\"");
    }
}

void StepSender::SendMenu(const Step& step) { NoteReply(step, SendMenuMessage(mDriver, step)); }

void StepSender::SendTicksFor(const Step& step) {
    std::int64_t sent = 0;
    for (const auto& [answer, count] : SendTicks(mDriver, step.ticks.times)) {
        NoteAnswer(step, "\"AI Timer\"/\"AI Go\"" + (count == 1 ? "" : " " + std::to_string(count) + " times"), answer);
        sent += count;
    }
    if (sent != step.ticks.sent) {
        Host().rules.Broken(Rule::kTicks, step.place + ": " + std::to_string(sent) + " ticks were sent, expected " +
                                              std::to_string(step.ticks.sent));
    }
}

void StepSender::SendCheckedFile(const Step& step) { NoteReply(step, SendFileCheck(mDriver, step)); }

void StepSender::SendPlain(const Step& step) {
    NoteAnswer(step, "\"" + step.caller + "\"/\"" + step.selector + "\"",
               mDriver.SendPlain(step.caller, step.selector, step.withBasicSuite));
}

void StepSender::RequestPort(const Step& step) {
    if (OpenPanel(step)) {
        NoteAnswer(step, "the panel asks for the port", mPanel.RequestPort());
    }
}

bool StepSender::OpenPanel(const Step& step) {
    const bool open = mPanel.Open();
    if (!open) {
        Host().rules.Broken(Rule::kNotReached, step.place + ": there is no messaging library for the panel");
    }
    return open;
}

void StepSender::NoteReply(const Step& step, const std::optional<Reply>& reply) {
    if (reply) {
        NoteAnswer(step, reply->message, reply->answer);
    }
}

void StepSender::NoteAnswer(const Step& step, const std::string& message, std::int32_t answer) {
    mTranscript.Line(kMessageIndent, message + " -> " + std::to_string(answer));
    if (answer != step.answer) {
        Host().rules.Broken(Rule::kReply, step.place + ": " + message + " was answered with " + std::to_string(answer) +
                                              ", expected " + std::to_string(step.answer));
    }
}

}  // namespace simhost
