// Host file paths as results of other suites' operations.
//
// Thread: main.
#pragma once

#include <string_view>

#include "doubles/host/suites/SuiteCall.h"
#include "host/FilePath.h"

namespace simhost {

// Puts a path into a caller's path object, which may be empty or hold a path already.
AIErr AnswerPath(const SuiteCall& call, std::string_view utf8, ai::FilePathData& target);

}  // namespace simhost
