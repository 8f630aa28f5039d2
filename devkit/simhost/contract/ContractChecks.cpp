#include "simhost/contract/ContractChecks.h"

#include "doubles/host/Host.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/HitFindings.h"

namespace simhost::contract {

void ReportFindings(const std::string& place) {
    NoteHits();
    for (const Finding& finding : Book().TakeNew()) {
        const Clause& clause = ClauseOf(finding.clause);
        const std::string text = std::string(clause.name) + ": " + place + ": " + Describe(finding);
        if (clause.level == Level::kContract) {
            Host().rules.Broken(Rule::kContract, text);
        } else {
            Host().notes.push_back(text);
        }
    }
}

}  // namespace simhost::contract
