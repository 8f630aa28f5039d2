// Thread: main.
#pragma once

#include "simhost/contract/ContractBook.h"
#include "simhost/contract/GuardedMemory.h"

namespace simhost::contract {

// The clause that a hit of guarded memory breaks, with the place in the code that did it.
Finding FindingOf(const Hit& hit);

// Turns what guarded memory has noted into findings. For uses after a return that come at any time.
void NoteHits();

}  // namespace simhost::contract
