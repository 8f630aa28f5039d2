#include "simhost/sweep/HostFaults.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

#include "doubles/host/Host.h"
#include "simhost/sweep/Injector.h"

namespace simhost::sweep {

namespace {

// Their results are not error codes, or they have none.
constexpr std::string_view kCannotFail[] = {
    "AI File Path Suite/IsEmpty",
    "AI Unicode String Suite/Length",
    "AI Unicode String Suite/UTF_16",
    "ATE CharFeatures Suite/AddRef",
    "ATE CharFeatures Suite/IsNull",
    "ATE CharFeatures Suite/Release",
    "ATE Font Suite/AddRef",
    "ATE Font Suite/IsNull",
    "ATE Font Suite/Release",
    "ATE TextRange Suite/AddRef",
    "ATE TextRange Suite/IsNull",
    "ATE TextRange Suite/Release",
    "ATE TextRunsIterator Suite/AddRef",
    "ATE TextRunsIterator Suite/IsNull",
    "ATE TextRunsIterator Suite/Release",
    "Panel/OnEvent",
    "SP Basic Suite/IsEqual",
    // Counted a second time with the name of the suite, and fail there.
    "SP Basic Suite/AcquireSuite",
    "SP Basic Suite/ReleaseSuite",
};

std::optional<CallFate> FateOf(const std::string& operation) {
    if (!CanFail(operation) || !TheInjector().Fails(Kind::kHost, operation)) {
        return std::nullopt;
    }
    return CallFate{kHostFault, TheInjector().IsFilled()};
}

}  // namespace

bool CanFail(std::string_view operation) {
    return std::find(std::begin(kCannotFail), std::end(kCannotFail), operation) == std::end(kCannotFail);
}

void InjectHostFaults() { Host().operations.inject = &FateOf; }

}  // namespace simhost::sweep
