// The ways through the plug-in to a call that failed and to what was left, in words.
#pragma once

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "simhost/sweep/Holdings.h"
#include "simhost/sweep/Injector.h"

namespace simhost::sweep {

// The functions on the way to the call of this number, from 1, the innermost first. Empty when there is none.
nlohmann::ordered_json WayToCall(const std::filesystem::path& plugin, const std::vector<CountedCall>& calls,
                                 std::size_t number);

// What is left more than before, the first five: [{"by": the giver, "in": the functions as above}, ...].
nlohmann::ordered_json WaysToWhatIsLeft(const std::filesystem::path& plugin, const std::vector<Held>& left,
                                        const std::vector<Held>& before);

}  // namespace simhost::sweep
