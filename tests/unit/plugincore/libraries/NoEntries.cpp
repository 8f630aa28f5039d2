// None of the entries. A name that nobody asks for: a library that exports nothing by itself is given every symbol by
// some linkers.
#include "Entry.h"

EXPORT_ENTRY(NobodyAsksForThis)
