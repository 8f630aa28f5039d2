#include "simhost/report/CallsOfRun.h"

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "simhost/report/CallJournal.h"
#include "simhost/report/CallJson.h"
#include "simhost/report/EventLog.h"
#include "simhost/report/ResultRecord.h"
#include "simhost/report/RunOutcome.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

bool IsCall(const Json& event) { return event.value("event", std::string()) == "call"; }

}  // namespace

void TellLostCalls(const std::filesystem::path& events, std::size_t offset, const std::filesystem::path& journal) {
    const std::vector<Json> told = ReadEvents(events, offset);
    std::size_t count = 0;
    for (const Json& event : told) {
        count += IsCall(event) && event.value("library", std::string()) == "plugincore" ? 1 : 0;
        count += event.value("event", std::string()) == "repeated" ? event.value("calls", std::size_t{0}) : 0;
    }
    EndLine(events);
    EventLog log(events);
    for (const PluginCoreCall& call : ReadJournal(journal, count)) {
        Json members = {{"library", "plugincore"}};
        members.update(AsJson(call));
        log.Write("call", members);
    }
}

void AddCalls(const std::filesystem::path& record, const std::filesystem::path& events, std::size_t offset) {
    Json calls = Json::array();
    Json step;
    for (const Json& event : ReadEvents(events, offset)) {
        if (event.contains("step")) {
            step = event["step"];
        }
        if (IsCall(event)) {
            Json call = {{"step", step}};
            call.update(event);
            call.erase("event");
            calls.push_back(std::move(call));
        }
    }
    AddToResult(record, "calls", std::move(calls));
}

std::vector<PluginCoreCall> CallsOfOpenStep(const std::vector<Json>& events) {
    std::vector<PluginCoreCall> calls;
    for (const Json& event : events) {
        if (event.contains("step")) {
            calls.clear();
        } else if (IsCall(event)) {
            calls.push_back(CallOf(event));
        }
    }
    return calls;
}

}  // namespace simhost
