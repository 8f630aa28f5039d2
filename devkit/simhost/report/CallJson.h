// A recorded call as machines read it: in JSON lines, in the result record, and in the journal of a run.
//
// Thread: any.
#pragma once

#include <nlohmann/json.hpp>

#include "simhost/checks/PluginCoreCalls.h"

namespace simhost {

nlohmann::ordered_json AsJson(const PluginCoreCall& call);
PluginCoreCall CallOf(const nlohmann::ordered_json& json);

}  // namespace simhost
