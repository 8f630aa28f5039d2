// Programs that run beside the host, such that each has a greater process identifier than the one before it.
#pragma once

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <vector>

#include "simhost/launch/ChildProcess.h"
#include "simhost/launch/Job.h"

namespace simhost {

// They belong to the job. Throws std::runtime_error when one does not start, or when Windows gives no such identifiers.
std::vector<ChildProcess> StartInOrder(const std::vector<std::filesystem::path>& programs, const Job& job);

// `identifiers`: of each program, those of its processes. Which process of each one to take so that they increase;
// shorter when there are too few.
std::vector<std::size_t> ChooseIncreasing(const std::vector<std::vector<DWORD>>& identifiers);

}  // namespace simhost
