#pragma once

namespace simhost::contract {

class ProbedLibrary;

// Makes the same calls many times and compares how many blocks of memory are in use. Calls the library's own entries:
// the layer takes memory itself. An entry that takes its time is left out.
void ProbeMemory(ProbedLibrary& library);

}  // namespace simhost::contract
