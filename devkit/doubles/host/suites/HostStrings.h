// Host strings as results of other suites' operations.
//
// Thread: main.
#pragma once

#include <string>
#include <string_view>

#include "doubles/host/suites/SuiteCall.h"
#include "host/UnicodeString.h"

namespace simhost {

// Puts a text into a caller's string object, which may be empty or hold a string already.
AIErr AnswerText(const SuiteCall& call, std::string_view utf8, ai::UnicodeStringData& target);
AIErr AnswerUnits(const SuiteCall& call, std::u16string units, ai::UnicodeStringData& target);

}  // namespace simhost
