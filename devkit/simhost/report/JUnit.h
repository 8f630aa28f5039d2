// The outcome of all runs in the form that build servers read: a suite for each file, a test case for each case.
#pragma once

#include <string>
#include <vector>

#include "simhost/report/RunOutcome.h"

namespace simhost {

std::string AsJUnit(const std::vector<RunOutcome>& runs);

// As text or attribute of XML 1.0, which cannot hold most control characters: they become "<0A>" and the like.
std::string AsXmlText(const std::string& text);

}  // namespace simhost
