// check: what the plug-in has left in the host is looked at.
#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

class Performance;

struct CheckState {
    nlohmann::ordered_json state;  // only the kinds that are expected, in the form that PresentState gives
};
CheckState ReadCheckState(ObjectReader& reader);
void Perform(const CheckState& action, Performance& performance);

}  // namespace simhost
