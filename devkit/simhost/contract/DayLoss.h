// Why the day through the plug-in did not come to its end, and whether the library is to blame: a host or a plug-in
// that fails must not be written on its bill.
//
// Thread: any.
#pragma once

#include <optional>
#include <string>

#include "simhost/contract/ContractRecord.h"
#include "simhost/report/ResultRecord.h"

namespace simhost::contract {

struct DayLoss {
    std::string why;                 // for people
    std::optional<Finding> finding;  // when it is the library's doing
};

// `underWay`: the entry that had not returned. `plugin`: the file name of the plug-in.
DayLoss LossOf(const Verdict& verdict, const std::optional<EntryCall>& underWay, const std::string& plugin);

}  // namespace simhost::contract
