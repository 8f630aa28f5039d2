#pragma once

#include <filesystem>
#include <string>

namespace simhost {

// Prints what scenarios can be made of, as JSON: verbs and kinds of objects with their keys, and the rules.
int List();

// Prints a scenario's cases with all values and defaults written out, as JSON by name of the case. "${work}" and
// "${plugin}" stand as they are. Exit code 2 when the scenario is not understood.
int Expand(const std::filesystem::path& scenario);

}  // namespace simhost
