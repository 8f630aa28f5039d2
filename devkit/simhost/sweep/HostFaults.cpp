#include "simhost/sweep/HostFaults.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

#include "doubles/host/Host.h"
#include "doubles/host/OperationList.h"
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
    // What else is counted, such as calls of the PluginCore, is no operation of the host.
    return IsHostOperation(operation) &&
           std::find(std::begin(kCannotFail), std::end(kCannotFail), operation) == std::end(kCannotFail);
}

void InjectHostFaults() { Host().operations.inject = &FateOf; }

}  // namespace simhost::sweep
