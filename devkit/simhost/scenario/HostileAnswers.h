// Answers that a PluginCore should never give, as a script for its double: other result codes, texts that are no JSON,
// too long, empty or no UTF-8, flags and ports that make no sense, exceptions. The same seed gives the same answers.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>

namespace simhost {

nlohmann::ordered_json HostileAnswers(std::uint64_t seed);

}  // namespace simhost
