// What is said once all runs are done.
#pragma once

#include <string>
#include <vector>

#include "simhost/report/RunOutcome.h"

namespace simhost {

// What failed, where, and the command that repeats it. Empty when everything passed. `program` is how the person calls
// this program, `options` what else decides what happens in a run: "--plugin X". `command` is the command with its
// arguments when it is not the one that plays a file: "window".
std::vector<std::string> SummaryOf(const std::vector<RunOutcome>& runs, const std::string& program,
                                   const std::string& command, const std::vector<std::string>& options);

// As a shell takes it: in quotes when it needs them.
std::string AsShellWord(const std::string& word);

}  // namespace simhost
