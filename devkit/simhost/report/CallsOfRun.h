// The calls of a finished run, from the lines that it wrote.
//
// Thread: any.
#pragma once

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "simhost/checks/PluginCoreCalls.h"

namespace simhost {

// Adds to the lines what the journal alone holds: the calls of the step in which the host was lost. `offset`: where the
// lines of this run begin.
void TellLostCalls(const std::filesystem::path& events, std::size_t offset, const std::filesystem::path& journal);

// Adds to a result record the calls of all steps.
void AddCalls(const std::filesystem::path& record, const std::filesystem::path& events, std::size_t offset);

// Of the step in which the host was lost.
std::vector<PluginCoreCall> CallsOfOpenStep(const std::vector<nlohmann::ordered_json>& events);

}  // namespace simhost
