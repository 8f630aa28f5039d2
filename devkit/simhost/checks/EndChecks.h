#pragma once

#include "simhost/launch/RunFolder.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

// What must hold once all steps are done: the right library was loaded and nothing is left over anywhere.
// Broken rules go into the host's book.
void CheckEnd(const Expectations& expect, const RunFolder& folder);

// Also when a run ends early: it says nothing about a library of one's own that was never called.
void CheckOwnLibraryWasPlayed();

}  // namespace simhost
