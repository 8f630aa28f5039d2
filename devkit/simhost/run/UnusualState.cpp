#include "simhost/run/UnusualState.h"

#include <windows.h>

#include <xmmintrin.h>

#include <clocale>
#include <cstdint>

#include "doubles/common/CompilerSupport.h"

namespace simhost {

namespace {

// Very small numbers count as zero: usual with programs that draw, and no result of the plug-in depends on it.
constexpr unsigned kFlushToZero = 0x8000;

void ComputeInDoublePrecision() {
    SetX87ControlWord(static_cast<std::uint16_t>((X87ControlWord() & ~0x0300U) | 0x0200U));
}

}  // namespace

// The error mode and the filter of exceptions are unusual from the process's first line on.
void MakeStateUnusual() {
    // Searched anyway: only what Windows tells of it is changed.
    wchar_t folder[MAX_PATH];
    if (GetSystemDirectoryW(folder, MAX_PATH) != 0) {
        SetDllDirectoryW(folder);
    }
    // By its number, which is the same in all languages.
    setlocale(LC_ALL, ".1252");
    SetThreadLocale(MAKELCID(MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH), SORT_DEFAULT));
    SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, nullptr);
    _mm_setcsr(_mm_getcsr() | kFlushToZero);
    ComputeInDoublePrecision();
}

}  // namespace simhost
