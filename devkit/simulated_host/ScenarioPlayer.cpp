#include "simulated_host/ScenarioPlayer.h"

#include <algorithm>
#include <map>
#include <system_error>
#include <utility>

#include "simulated_host/Host.h"
#include "simulated_host/HostDialog.h"
#include "simulated_host/ImportWatch.h"
#include "simulated_host/suites/AllSuites.h"

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

void PrepareHost(const Scenario& scenario) {
    SimulatedHost& host = Host();
    InstallAllSuites(host.suites);
    for (const std::string& name : scenario.refusedSuites) {
        host.suites.Withdraw(name);
    }
    for (const Document& document : scenario.documents) {
        host.model.documents.emplace(document.name, document);
    }
    host.model.defaultFonts = scenario.defaultFonts;
    host.model.emptyHandleForNoMatches = scenario.emptyHandleForNoMatches;
}

void ChangeDocument(Document& document, const DocumentChange& change) {
    document.path = change.path.value_or(document.path);
    document.modified = change.modified.value_or(document.modified);
    document.frames = change.frames.value_or(document.frames);
    document.placed = change.placed.value_or(document.placed);
}

}  // namespace

ScenarioPlayer::ScenarioPlayer(const Scenario& scenario, const RunFolder& folder, const Transcript& transcript)
    : mScenario(scenario),
      mFolder(folder),
      mTranscript(transcript),
      mPlugin((PrepareHost(scenario), folder.Plugin())),
      mDriver(mPlugin),
      mChecks(folder, transcript) {
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
    } else if (step.action == "write") {
        std::for_each(step.files.begin(), step.files.end(), [&](const auto& file) { mFolder.WriteFile(file); });
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
    ChangeModelBefore(step);
    mChecks.Begin();
    SendFor(step);
    ChangeModelAfter(step);
    mChecks.Check(step);
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

void ScenarioPlayer::ChangeModelBefore(const Step& step) {
    HostModel& model = Host().model;
    if (step.action == "open" || step.action == "new") {
        model.Open(step.document);
    } else if (step.action == "change") {
        ChangeDocument(model.Named(step.document), step.change);
    } else if (step.action == "save" || step.action == "save_as") {
        SaveDocument(step);
    }
}

// The host writes the file before it tells. A path under which there is no file is only told: it may hold what no file
// system allows.
void ScenarioPlayer::SaveDocument(const Step& step) {
    Document& document = Host().model.Named(step.document);
    ChangeDocument(document, step.change);
    document.modified = !step.fileWritten;
    std::error_code ignored;
    if (step.fileWritten && std::filesystem::is_regular_file(mFolder.At(document.path), ignored)) {
        mFolder.WriteFile({document.path, "saved by the simulated host\n", std::nullopt});
    }
}

void ScenarioPlayer::ChangeModelAfter(const Step& step) {
    HostModel& model = Host().model;
    if (step.action == "close" && !step.documentGone) {
        model.Close(step.document);
    }
}

void ScenarioPlayer::SendFor(const Step& step) {
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
    void* const data = aboutDocument ? model.Named(step.document).handle : nullptr;
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
