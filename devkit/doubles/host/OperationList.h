// The names of all operations of the host that a scenario can count, make fail or nest messages into. Every call of an
// operation looks itself up here, so none can be forgotten.
//
// Thread: any.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace simhost {

// "AI Font Suite/GetDefaultFont" and the like.
bool IsHostOperation(std::string_view name);

// Acquiring and releasing of single suites among them: "SP Basic Suite/AcquireSuite/AI Font Suite".
std::vector<std::string> HostOperationNames();
std::vector<std::string> SuiteNames();

}  // namespace simhost
