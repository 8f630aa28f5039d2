// What a scenario need not write: its beginning, its end, and the usual calls.
#pragma once

#include <nlohmann/json.hpp>

#include "simhost/scenario/Values.h"

namespace simhost {

// Writes the defaults into one story whose values are filled in: "begin", "steps" and "end" are arrays of steps
// afterwards, all expected calls name all their arguments, and the texts of answers are texts. Complains about calls
// and answers that cannot be; what else is wrong is left for the reader.
void WriteDefaults(nlohmann::ordered_json& story, Values& values, const Place& place);

}  // namespace simhost
