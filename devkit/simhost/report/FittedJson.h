// JSON for people: broken into lines only where it would be too long.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace simhost {

std::vector<std::string> FittedJson(const nlohmann::ordered_json& value, std::size_t width);

}  // namespace simhost
