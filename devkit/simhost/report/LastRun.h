// Remembers what failed the last time, for the one who wants to play just that again. It lies in the local application
// data of the user: "simhost/last-run.json".
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "simhost/report/RunOutcome.h"

namespace simhost {

struct FailedCase {
    std::filesystem::path file;  // absolute
    std::string caseName;        // empty: the file has no cases, or cannot be read

    bool operator==(const FailedCase&) const = default;
};

// Nothing when nobody has played anything yet.
std::optional<std::vector<FailedCase>> FailedLastTime();

// These are not there any more.
void ForgetFailures(const std::vector<FailedCase>& gone);

// `keepsOthers`: what failed before is remembered as well, unless it is among the runs. A run that cannot be remembered
// is no failure: nothing is said.
void RememberFailures(const std::vector<RunOutcome>& runs, bool keepsOthers);

}  // namespace simhost
