#include "simhost/sweep/WorkerResults.h"

#include <cstdint>

namespace simhost::sweep {

namespace {

using Json = nlohmann::ordered_json;

Json AsJson(const PlannedFault& planned) {
    return {{"kind", NameOf(planned.fault.kind)},
            {"mode", NameOf(planned.fault.mode)},
            {"number", planned.fault.number},
            {"operation", planned.operation},
            {"key", planned.key}};
}

Json AsJson(const Amounts& amounts) {
    Json json = Json::array();
    for (const auto& [kindAndMode, amount] : amounts) {
        json.push_back({NameOf(kindAndMode.first), NameOf(kindAndMode.second), amount});
    }
    return json;
}

}  // namespace

Amounts AmountsOf(const std::vector<PlannedFault>& plan) {
    Amounts amounts;
    for (const PlannedFault& planned : plan) {
        ++amounts[{planned.fault.kind, planned.fault.mode}];
    }
    return amounts;
}

WorkerResults::WorkerResults(const std::filesystem::path& file) { mFile.Open(file, L"wb"); }

void WorkerResults::Failed(const char* name, const std::vector<std::string>& complaints) {
    Write({{name, complaints}});
}

void WorkerResults::Instance(const std::string& whyNotTwice) { Write({{"instance", whyNotTwice}}); }

void WorkerResults::Planned(const PlanAmounts& amounts) {
    Json counted = Json::object();
    for (const auto& [kind, count] : amounts.counted) {
        counted[NameOf(kind)] = count;
    }
    Write({{"counted", std::move(counted)},
           {"offered", AsJson(amounts.offered)},
           {"distinct", AsJson(amounts.distinct)},
           {"planned", AsJson(amounts.planned)}});
}

void WorkerResults::Begin(std::size_t index, const PlannedFault& planned) {
    Write({{"begin", index}, {"fault", AsJson(planned)}});
}

void WorkerResults::Again(std::size_t index) { Write({{"again", index}}); }

void WorkerResults::End(std::size_t index, const FaultEnd& end) {
    std::int64_t injected = 0;
    for (const auto& [operation, times] : end.run.failures) {
        injected += times;
    }
    Json answers = Json::array();
    for (const auto& [answer, times] : end.run.answers) {
        answers.push_back({answer, times});
    }
    Write({{"end", index},
           {"injected", injected},
           {"answers", std::move(answers)},
           {"unhandled", end.run.unhandled},
           {"lost", end.run.isLost},
           {"again", end.hasRunAgain},
           {"findings", end.verdict.findings},
           {"explained", end.verdict.explained},
           {"call", end.call},
           {"left", end.left}});
}

void WorkerResults::Replaying(std::size_t first) { Write({{"replaying", first}}); }

void WorkerResults::Replayed(std::size_t next) { Write({{"replayed", next}}); }

void WorkerResults::Done() { Write({{"done", true}}); }

void WorkerResults::Write(const Json& line) { mFile.Write(line.dump(-1, ' ', false, Json::error_handler_t::replace)); }

}  // namespace simhost::sweep
