// Compares recorded calls with those that a scenario expects.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simhost/checks/PluginCoreCalls.h"

namespace simhost {

// An element of a step's "calls", with all its arguments.
PluginCoreCall ExpectedCall(const nlohmann::ordered_json& expected);
// All of them.
std::vector<PluginCoreCall> ExpectedCalls(const nlohmann::ordered_json& expected);

// Whether it is the expected call: same function, same arguments, same bytes.
bool IsCall(const PluginCoreCall& expected, const PluginCoreCall& call);

// In words what differs; empty when the calls are exactly the expected ones. `expected` is the array of a step.
std::string DifferenceOf(const nlohmann::ordered_json& expected, const std::vector<PluginCoreCall>& calls);

// The same for many ticks, of which each brings about `each`. At most 1 + seconds/10 ticks begin with the question
// whether the PluginCore is enabled.
std::string DifferenceOfTicks(const nlohmann::ordered_json& each, std::int64_t ticks,
                              const std::vector<PluginCoreCall>& calls, std::int64_t seconds);

}  // namespace simhost
