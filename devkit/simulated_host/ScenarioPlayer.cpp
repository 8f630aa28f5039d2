#include "simulated_host/ScenarioPlayer.h"

#include <algorithm>
#include <map>
#include <utility>

#include "simulated_host/DocumentSteps.h"
#include "simulated_host/Host.h"
#include "simulated_host/HostDialog.h"
#include "simulated_host/HostPreparation.h"
#include "simulated_host/ImportWatch.h"
#include "simulated_host/PresentState.h"

namespace simhost {

namespace {

constexpr int kMessageIndent = 2;
constexpr std::int32_t kStayLoaded = 1;

struct NotificationRow {
    const char* type;
    bool aboutDocument;
};

// The notifications of the host by the step that brings them about.
const std::map<std::string, NotificationRow>& Notifications() {
    static const std::map<std::string, NotificationRow> sNotifications = {
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
    return sNotifications;
}

// A notification that comes late still tells the handle that the document had.
void* HandleToTell(const Document& document) {
    return document.handle == nullptr ? document.formerHandle : document.handle;
}

}  // namespace

ScenarioPlayer::ScenarioPlayer(const Scenario& scenario, const RunFolder& folder, const Transcript& transcript)
    : mScenario(scenario),
      mFolder(folder),
      mTranscript(transcript),
      mPlugin((PrepareHost(scenario), folder.Plugin())),
      mDriver(mPlugin),
      mChecks(folder, transcript),
      mPanel(folder.Program().parent_path()),
      mMessaging(folder, transcript, mPanel) {
    WatchImports(mPlugin.Module());
}

std::string ScenarioPlayer::WhereItIs() const {
    const std::string step = mStep == nullptr ? "before the first step" : mStep->place;
    return mDriver.Current().empty() ? step : step + ", message " + mDriver.Current();
}

void ScenarioPlayer::PlaySteps() {
    for (const Step& step : mScenario.steps) {
        mStep = &step;
        if (!step.say.empty()) {
            mTranscript.Step(step.say);
        }
        Perform(step);
    }
}

void ScenarioPlayer::Perform(const Step& step) {
    if (step.action == "dialog") {
        PerformDialog(step);
    } else if (step.action == "check") {
        PerformCheck(step);
    } else if (step.action == "wait") {
        Sleep(static_cast<DWORD>(step.seconds * 1000));
    } else if (step.action == "write") {
        std::for_each(step.files.begin(), step.files.end(), [&](const auto& file) { mFolder.WriteFile(file); });
    } else if (step.action == "move") {
        mFolder.Move(step.move);
    } else if (step.action == "panel_open") {
        OpenPanel(step);
    } else if (step.action == "answers") {
        mFolder.WriteAnswers(step.answers);
    } else if (step.action == "switch_to") {
        Host().model.current = Host().model.Named(step.document).name;
    } else if (step.action == "edit") {
        ChangeDocument(Host().model.Named(step.document), step.change);
    } else {
        PerformMessage(step);
    }
}

void ScenarioPlayer::PerformMessage(const Step& step) {
    PrepareStepEvents(step);
    ChangeModelBefore(step, mFolder);
    mChecks.Begin();
    SendFor(step);
    ChangeModelAfter(step);
    mChecks.Check(step);
    mMessaging.Check(step);
}

void ScenarioPlayer::PrepareStepEvents(const Step& step) {
    std::vector<ScriptedEvent> events;
    for (const FailureToScript& failure : step.failures) {
        events.push_back({failure.operation, failure.nth, failure.code, nullptr});
    }
    for (const NestedStep& nested : step.nested) {
        events.push_back({nested.operation, nested.nth, 0, [this, &nested] { SendNested(nested); }});
    }
    Host().operations.BeginStep(std::move(events));
}

void ScenarioPlayer::SendFor(const Step& step) {
    if (step.action == "panel_request") {
        // No message, so the plug-in may have been unloaded: the bus calls its listener all the same.
        RequestPort(step);
        return;
    }
    if (!mPlugin.IsLoaded()) {
        Host().rules.Broken(Rule::kNotReached, step.place + ": the plug-in is not loaded any more");
        return;
    }
    const auto notification = Notifications().find(step.action);
    if (notification != Notifications().end()) {
        SendNotifications(step, notification->second.type);
    } else if (step.action == "notify") {
        SendNotifications(step, step.notifierType);
    } else if (step.action == "unload") {
        SendUnload(step);
    } else if (step.action == "tick") {
        SendTicksFor(step);
    } else if (step.action == "menu_update" || step.action == "menu_go") {
        NoteReply(step, SendMenuMessage(mDriver, step));
    } else if (step.action == "check_file") {
        NoteReply(step, SendFileCheck(mDriver, step));
    } else if (step.action == "message") {
        NoteAnswer(step, "\"" + step.caller + "\"/\"" + step.selector + "\"",
                   mDriver.SendPlain(step.caller, step.selector, step.withBasicSuite));
    } else {
        const char* const selector = step.action == "startup" ? kSPInterfaceStartupSelector
                                     : step.action == "about" ? kSPInterfaceAboutSelector
                                                              : kSPInterfaceShutdownSelector;
        NoteAnswer(step, std::string("\"SP Interface\"/\"") + selector + "\"", mDriver.SendInterface(selector));
    }
}

void ScenarioPlayer::SendNotifications(const Step& step, const std::string& type) {
    HostModel& model = Host().model;
    const auto row = Notifications().find(step.action);
    const bool aboutDocument = row == Notifications().end() ? !step.document.empty() : row->second.aboutDocument;
    void* const data = aboutDocument ? HandleToTell(model.Named(step.document)) : nullptr;
    if (step.action == "close" && step.documentGone) {
        model.Close(step.document);
    }
    // A copy: a handler may register more.
    const auto notifiers = model.notifiers.Objects();
    bool sent = false;
    for (const auto& [handle, notifier] : notifiers) {
        if (notifier.type == type) {
            sent = true;
            const std::int32_t answer = mDriver.SendNotification(reinterpret_cast<void*>(handle), type, data);
            NoteAnswer(step, "\"AI Notifier\"/\"AI Notify\" " + type + (aboutDocument ? ", " + step.document : ""),
                       answer);
        }
    }
    if (!sent) {
        Host().rules.Broken(Rule::kNotReached, step.place + ": nobody is registered for \"" + type + "\"");
    }
}

void ScenarioPlayer::SendUnload(const Step& step) {
    const std::int32_t answer = mDriver.SendAccess(kSPAccessUnloadSelector);
    NoteAnswer(step, "\"SP Access\"/\"Unload\"", answer);
    if (answer != kStayLoaded) {
        mPlugin.Unload();
    }
}

bool ScenarioPlayer::OpenPanel(const Step& step) {
    const bool open = mPanel.Open();
    if (!open) {
        Host().rules.Broken(Rule::kNotReached, step.place + ": there is no messaging library for the panel");
    }
    return open;
}

void ScenarioPlayer::RequestPort(const Step& step) {
    if (OpenPanel(step)) {
        NoteAnswer(step, "the panel asks for the port", mPanel.RequestPort());
    }
}

void ScenarioPlayer::SendTicksFor(const Step& step) {
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

void ScenarioPlayer::SendNested(const NestedStep& nested) {
    mTranscript.Line(kMessageIndent, "inside " + nested.operation + ":");
    SendFor(nested.step.front());
}

void ScenarioPlayer::NoteAnswer(const Step& step, const std::string& message, std::int32_t answer) {
    mTranscript.Line(kMessageIndent, message + " -> " + std::to_string(answer));
    if (answer != step.answer) {
        Host().rules.Broken(Rule::kReply, step.place + ": " + message + " was answered with " + std::to_string(answer) +
                                              ", expected " + std::to_string(step.answer));
    }
}

void ScenarioPlayer::NoteReply(const Step& step, const std::optional<Reply>& reply) {
    if (reply) {
        NoteAnswer(step, reply->message, reply->answer);
    }
}

void ScenarioPlayer::PerformCheck(const Step& step) {
    const nlohmann::ordered_json present = PresentState();
    if (step.state.contains("menu")) {
        for (const std::string& line : MenuLines(present["menu"])) {
            mTranscript.Line(kMessageIndent, line);
        }
    }
    const std::string difference = DifferenceOfStates(step.state, present);
    if (!difference.empty()) {
        Host().rules.Broken(Rule::kState, step.place + ": " + difference);
    }
}

void ScenarioPlayer::PerformDialog(const Step& step) {
    const DialogRecord record = ShowHostDialog(step.dialog);
    mTranscript.Line(kMessageIndent, "dialog \"" + step.dialog.title + "\": " + Describe(record));
    const DialogRecord expected = RecordFor(step.dialog.end);
    if (record.received != expected.received || record.endedWithOk != expected.endedWithOk) {
        Host().rules.Broken(Rule::kDialog, step.place + ": the dialog \"" + step.dialog.title + "\" was " +
                                               Describe(record) + ", expected " + Describe(expected));
    }
}

}  // namespace simhost
