// Thread: main.
#pragma once

#include "simhost/contract/ContractBook.h"
#include "simhost/contract/GuardedMemory.h"

namespace simhost::contract {

// The clause that a hit of guarded memory breaks, with the place in the code that did it.
Finding FindingOf(const Hit& hit);

}  // namespace simhost::contract
