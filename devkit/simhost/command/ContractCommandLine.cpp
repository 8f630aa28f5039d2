#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/contract/ContractReport.h"
#include "simhost/contract/ProbeProcess.h"
#include "simhost/scenario/NearestWord.h"

namespace simhost {

namespace {

constexpr int kPassed = 0;
constexpr int kNotFound = 2;

int ExitCodeOf(contract::Judgement judgement) {
    switch (judgement) {
        case contract::Judgement::kKept:
            return kPassed;
        case contract::Judgement::kBroken:
            return 1;
        case contract::Judgement::kUnfinished:
            break;
    }
    return 2;
}

struct Texts {
    std::string library, level = "contract", plugin;
    bool asJson = false;
    contract::ProbeLimits limits{};
};

int CheckLibrary(const Texts& texts) {
    const contract::Level level = *contract::FindLevel(texts.level);
    const contract::ContractResult result =
        contract::CheckContract(Wide(texts.library), Wide(texts.plugin), texts.limits);
    if (texts.asJson) {
        const auto json = contract::ReportJson(result, level, texts.library);
        std::printf("%s\n", json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace).c_str());
    } else {
        std::printf("%s", contract::ReportText(result, level, texts.library).c_str());
    }
    return ExitCodeOf(contract::JudgementOf(result, level));
}

int Explain(const std::string& name) {
    const contract::Clause* const clause = contract::FindClause(name);
    if (clause == nullptr) {
        std::vector<std::string> known;
        for (const contract::Clause& one : contract::AllClauses()) {
            known.emplace_back(one.name);
        }
        std::fprintf(stderr, "simhost: there is no clause \"%s\"%s\n", name.c_str(), DidYouMean(name, known).c_str());
        return kNotFound;
    }
    std::printf("%s", contract::ExplanationOf(*clause).c_str());
    return kPassed;
}

}  // namespace

void AddContract(CLI::App& app, ChosenCommand& chosen) {
    const auto texts = std::make_shared<Texts>();
    CLI::App* const command = app.add_subcommand("contract", "Check a PluginCore against its contract");
    command->add_option("library", texts->library, "The library's file")->required();
    command->add_option("--level", texts->level, "contract, robust or pedantic: each contains those before it")
        ->check(CLI::IsMember({"contract", "robust", "pedantic"}))
        ->capture_default_str();
    command->add_option("--plugin", texts->plugin, "The plug-in's file; else the one beside this program");
    command->add_option("--call-time-limit", texts->limits.callSeconds, "Seconds after which one call hangs")
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
    command->add_option("--probe-time-limit", texts->limits.probeSeconds, "Seconds after which a probe calls no more")
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
    command->add_flag("--json", texts->asJson, "Print JSON");
    command->callback([texts, &chosen] { chosen = [texts] { return CheckLibrary(*texts); }; });
}

void AddExplain(CLI::App& app, ChosenCommand& chosen) {
    const auto name = std::make_shared<std::string>();
    CLI::App* const command = app.add_subcommand("explain", "Tell why a clause of the contract is there");
    command->add_option("clause", *name, "As \"simhost contract\" names it")->required();
    command->callback([name, &chosen] { chosen = [name] { return Explain(*name); }; });
}

void AddProbe(CLI::App& app, ChosenCommand& chosen) {
    const auto name = std::make_shared<std::string>();
    const auto library = std::make_shared<std::string>();
    const auto seconds = std::make_shared<std::int64_t>(contract::ProbeLimits{}.probeSeconds);
    // An empty group keeps it out of the help.
    CLI::App* const command = app.add_subcommand("probe", "")->group("");
    command->add_option("probe", *name)->required();
    command->add_option("library", *library)->required();
    command->add_option("--seconds", *seconds);
    command->callback([name, library, seconds, &chosen] {
        chosen = [name, library, seconds] { return contract::RunProbe(*name, Wide(*library), *seconds); };
    });
}

}  // namespace simhost
