// Why a process that called the library did not come to its end, and whether the library is to blame: a host or a
// plug-in that fails must not be written on its bill.
//
// Thread: any.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "doubles/host/Rules.h"
#include "simhost/contract/ContractRecord.h"

namespace simhost::contract {

struct Loss {
    std::string why;                 // for people
    std::optional<Finding> finding;  // when it is the library's doing
};

// File names.
struct Suspects {
    std::string library;
    std::string plugin;  // empty without one
};

// The first violation that tells of a loss; nothing when there is none. `underWay`: the entry that had not returned. A
// run that took too long is no loss: each of its calls may have returned in time.
std::optional<Loss> LossOf(std::span<const Violation> violations, const std::optional<EntryCall>& underWay,
                           const Suspects& suspects);

}  // namespace simhost::contract
