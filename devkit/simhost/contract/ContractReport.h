// What came of a contract check, for people and as JSON.
//
// Thread: any.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "simhost/contract/ContractRun.h"

namespace simhost::contract {

enum class Judgement {
    kKept,       // all clauses up to the level, as far as they were tried
    kBroken,     // at least one
    kUnfinished  // none that is known, but not all was tried that should have been
};
Judgement JudgementOf(const ContractResult& result, Level level);

// Lines for people, the verdict last.
std::string ReportText(const ContractResult& result, Level level, const std::string& library);
nlohmann::ordered_json ReportJson(const ContractResult& result, Level level, const std::string& library);

// Level, reason and cure of a clause.
std::string ExplanationOf(const Clause& clause);

}  // namespace simhost::contract
