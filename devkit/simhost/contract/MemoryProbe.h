// Make the same calls many times and compare what is in use: blocks of memory, and handles and objects of Windows. They
// call the library's own entries: the layer takes memory itself. An entry that takes its time is left out, and so is
// the rest when there is no time left.
//
// Thread: main.
#pragma once

namespace simhost::contract {

class ProbedLibrary;

// Entries that a host calls again and again.
void ProbeMemory(ProbedLibrary& library);
// Start and end of the library.
void ProbeStarts(ProbedLibrary& library);

}  // namespace simhost::contract
