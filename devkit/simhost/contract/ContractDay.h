// A working day of the host as a scenario, in which any PluginCore may be asked and told whatever comes.
#pragma once

namespace simhost::contract {

// JSON. Any calls may come: only what the contract says counts.
extern const char* const kContractDay;

}  // namespace simhost::contract
