#include "simhost/sweep/Plan.h"

#include <cstdint>
#include <cstdio>
#include <map>
#include <utility>

namespace simhost::sweep {

namespace {

// FNV-1a: the same in every process.
std::uint64_t HashOf(const std::vector<std::uint32_t>& numbers) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const std::uint32_t number : numbers) {
        hash = (hash ^ number) * 0x100000001B3;
    }
    return hash;
}

std::string KeyOf(const Fault& fault, const CountedCall& call) {
    char hash[24];
    std::snprintf(hash, sizeof hash, "%016llx", static_cast<unsigned long long>(HashOf(call.returns)));
    return std::string(NameOf(fault.kind)) + "|" + NameOf(fault.mode) + "|" + call.operation + "|" + hash;
}

// A suite that is refused is held by nobody, whatever was given with it; and one that is not released still is.
bool CanBeFilled(Kind kind, const std::string& operation) {
    return kind == Kind::kHost && !operation.starts_with("SP Basic Suite/");
}

}  // namespace

std::vector<PlannedFault> AllFaults(const Injector& recorded, const std::vector<Kind>& kinds,
                                    const std::vector<Mode>& modes) {
    std::vector<PlannedFault> faults;
    for (const Kind kind : kinds) {
        for (const Mode mode : modes) {
            std::size_t number = 0;
            for (const CountedCall& call : recorded.Calls(kind)) {
                const Fault fault{kind, mode, ++number};
                if (mode != Mode::kFilled || CanBeFilled(kind, call.operation)) {
                    faults.push_back({fault, call.operation, KeyOf(fault, call)});
                }
            }
        }
    }
    return faults;
}

void KeepDistinct(std::vector<PlannedFault>& faults, std::set<std::string> known) {
    std::erase_if(faults, [&](const PlannedFault& planned) { return !known.insert(planned.key).second; });
}

void KeepEvery(std::vector<PlannedFault>& faults, std::size_t every) {
    std::map<std::pair<Kind, Mode>, std::size_t> seen;
    std::erase_if(faults, [&](const PlannedFault& planned) {
        return seen[{planned.fault.kind, planned.fault.mode}]++ % every != 0;
    });
}

}  // namespace simhost::sweep
