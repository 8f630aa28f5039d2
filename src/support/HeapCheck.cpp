#include "support/HeapCheck.h"

#include <malloc.h>
#include <windows.h>

#include <cstdio>

#include "support/Log.h"

void CheckHeap(const char* sourceName, std::int32_t lineNumber) {
    const int result = _heapchk();
    if (result == _HEAPOK && HeapValidate(GetProcessHeap(), 0, nullptr) != 0) {
        LogMessage(kLogNote, "Heap is okay in %s, line %d", sourceName, lineNumber);
        return;
    }
    // On a stack buffer: a corrupt heap is no place to build a text in.
    char text[256];
    _snprintf_s(text, sizeof(text), _TRUNCATE, "Heap corruption %d detected in '%s' line %d", result, sourceName,
                lineNumber);
    MessageBoxA(nullptr, text, "ERROR", MB_OK);
}
