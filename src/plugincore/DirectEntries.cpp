#include "plugincore/EntryInterposition.h"

FARPROC InterposeEntry(HMODULE /*library*/, const char* /*name*/, FARPROC address) noexcept { return address; }
