// Thread: main.
#pragma once

#include <string>

namespace simhost::contract {

// What was seen since the last call becomes broken rules and notes of the host: clauses of the level "contract" break
// the rule, the text begins with the clause's name; those of the other levels are notes. `place` is a step's.
void ReportFindings(const std::string& place);

}  // namespace simhost::contract
