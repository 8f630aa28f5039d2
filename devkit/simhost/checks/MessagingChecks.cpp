#include "simhost/checks/MessagingChecks.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "doubles/common/Text.h"
#include "doubles/host/Host.h"
#include "simhost/checks/CallAlignment.h"
#include "simhost/checks/CallDifference.h"
#include "simhost/checks/ImportWatch.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// As a scenario writes it.
Json AsJson(const PanelEvent& event) {
    Json json = {{"scope", event.scope}};
    const auto add = [&json](const char* key, const std::optional<std::string>& text) {
        if (text) {
            json[key] = *text;
        }
    };
    add("type", event.type);
    add("application", event.application);
    add("extension", event.extension);
    add("data", event.data);
    return json;
}

// As a scenario names them: relative to the folder of the run.
std::vector<std::string> TakeLoads(const RunFolder& folder) {
    std::vector<std::string> loads;
    for (const MessagingLoad& load : TakeMessagingLoads()) {
        const std::filesystem::path file = std::filesystem::path(load.file).lexically_relative(folder.Root());
        loads.push_back(Utf8(file.generic_wstring()) + (load.succeeded ? "" : " failed"));
    }
    return loads;
}

std::string Listed(const std::vector<std::string>& loads) {
    std::string list;
    for (const std::string& load : loads) {
        list += (list.empty() ? "" : ", ") + load;
    }
    return list.empty() ? "nothing" : list;
}

}  // namespace

void MessagingChecks::Check(const Step& step) {
    CheckLoads(step);
    CheckCalls(step);
    CheckPanelEvents(step);
}

void MessagingChecks::CheckLoads(const Step& step) {
    const std::vector<std::string> loads = TakeLoads(mFolder);
    mReport.Observed("loads", loads);
    if (step.expect.loads && *step.expect.loads != loads) {
        Host().rules.Broken(Rule::kMessagingLibrary, step.place + ": the plug-in loaded " + Listed(loads) +
                                                         ", expected " + Listed(*step.expect.loads));
    }
}

void MessagingChecks::CheckCalls(const Step& step) {
    const std::vector<PluginCoreCall> calls = mCalls.TakeNew();
    mReport.Calls(Library::kMessaging, calls);
    const std::string difference = step.expect.busCalls ? DifferenceOf(*step.expect.busCalls, calls) : "";
    if (!difference.empty() && !step.expect.anything) {
        const std::string text = step.place + ": " + difference;
        if (mReport.TellsCalls()) {
            mReport.Explain(text, LinesOfCallDifference(*step.expect.busCalls, calls));
        }
        Host().rules.Broken(Rule::kBusCalls, text);
    }
}

void MessagingChecks::CheckPanelEvents(const Step& step) {
    const std::vector<PanelEvent> events = mPanel.TakeEvents();
    Json observed = Json::array();
    for (const PanelEvent& event : events) {
        observed.push_back(AsJson(event));
    }
    mReport.Observed("panel_events", std::move(observed));
    for (std::size_t i = 0; i < std::max(events.size(), step.expect.panelEvents.size()); ++i) {
        const std::string number = step.place + ": event " + std::to_string(i + 1) + ": ";
        if (i >= events.size()) {
            Host().rules.Broken(Rule::kPanelEvents,
                                number + "expected " + Describe(step.expect.panelEvents[i]) + ", but nothing came");
            continue;
        }
        mReport.Line("the panel is told: " + events[i].data.value_or("nothing"));
        if (step.expect.anything) {
            continue;
        }
        if (i >= step.expect.panelEvents.size()) {
            Host().rules.Broken(Rule::kPanelEvents, number + "nothing was expected, but came " + Describe(events[i]));
        } else if (events[i] != step.expect.panelEvents[i]) {
            Host().rules.Broken(Rule::kPanelEvents, number + "expected " + Describe(step.expect.panelEvents[i]) +
                                                        ", but came " + Describe(events[i]));
        }
    }
}

}  // namespace simhost
