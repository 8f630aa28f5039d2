#include "simhost/launch/StartInOrder.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace simhost {

namespace {

constexpr int kRounds = 32;

std::vector<std::vector<DWORD>> IdentifiersOf(const std::vector<std::vector<ChildProcess>>& processes) {
    std::vector<std::vector<DWORD>> identifiers(processes.size());
    for (std::size_t i = 0; i < processes.size(); ++i) {
        std::transform(processes[i].begin(), processes[i].end(), std::back_inserter(identifiers[i]),
                       [](const ChildProcess& process) { return process.Id(); });
    }
    return identifiers;
}

}  // namespace

std::vector<std::size_t> ChooseIncreasing(const std::vector<std::vector<DWORD>>& identifiers) {
    std::vector<std::size_t> chosen;
    DWORD last = 0;
    for (const std::vector<DWORD>& ofOne : identifiers) {
        // The lowest that will do leaves most room for the others.
        std::optional<std::size_t> best;
        for (std::size_t i = 0; i < ofOne.size(); ++i) {
            if (ofOne[i] > last && (!best || ofOne[i] < ofOne[*best])) {
                best = i;
            }
        }
        if (!best) {
            return chosen;
        }
        chosen.push_back(*best);
        last = ofOne[*best];
    }
    return chosen;
}

std::vector<ChildProcess> StartInOrder(const std::vector<std::filesystem::path>& programs, const Job& job) {
    const std::vector<std::wstring> arguments = {std::to_wstring(GetCurrentProcessId())};
    // Identifiers are used again, in any order. All processes hold theirs until the choice is made.
    std::vector<std::vector<ChildProcess>> started(programs.size());
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t i = 0; i < programs.size(); ++i) {
            started[i].emplace_back(programs[i], arguments, job);
        }
        const std::vector<std::size_t> chosen = ChooseIncreasing(IdentifiersOf(started));
        if (chosen.size() == programs.size()) {
            std::vector<ChildProcess> kept;
            for (std::size_t i = 0; i < programs.size(); ++i) {
                kept.push_back(std::move(started[i][chosen[i]]));
            }
            return kept;
        }
    }
    throw std::runtime_error("Windows gives the processes no identifiers that increase");
}

}  // namespace simhost
