#pragma once

#include <cstdint>

// Diagnostic: checks the runtime's heap and the process heap. A sound heap is logged; a corrupt one is shown in a
// message box that waits for its OK button. `sourceName` and `lineNumber` say where the check stands.
// Thread: any.
void CheckHeap(const char* sourceName, std::int32_t lineNumber);
