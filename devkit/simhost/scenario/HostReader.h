#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "simhost/scenario/Place.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

// Reads what the host has. A document whose path lies in the folder of the run gets a file there, unless it says that
// it has none.
void ReadHost(const nlohmann::ordered_json& value, const Place& place, const std::string& workFolder,
              Scenario& scenario);

// One of its documents.
void ReadDocument(const nlohmann::ordered_json& value, const std::string& name, const Place& place,
                  const std::string& workFolder, Scenario& scenario);

}  // namespace simhost
