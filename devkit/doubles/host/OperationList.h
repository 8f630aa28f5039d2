// The names of all operations of the host that a scenario can count or make fail. Every call of an operation looks
// itself up here, so none can be forgotten.
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
// Where a scenario can nest messages: the operations, "Panel/OnEvent", and the PluginCore's entries as in
// "PluginCore/IdleEvent".
std::vector<std::string> MomentNames();
std::vector<std::string> SuiteNames();

}  // namespace simhost
