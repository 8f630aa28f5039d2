// What a step can do, and what has to be said about it.
#pragma once

#include <string>
#include <string_view>

#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

struct StepAction {
    std::string_view name;  // the value of "do"
    // Reads the keys that only this action has. Throws ScenarioError.
    void (*readDetails)(ObjectReader& reader, Step& step);
    bool sendsMessage = true;  // and so has something to expect
};

// Throws ScenarioError when nobody knows the action.
const StepAction& FindAction(const std::string& name, const std::string& place);

}  // namespace simhost
