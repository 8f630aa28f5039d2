#include "doubles/common/ForeignException.h"

#include <windows.h>

#include <cstdint>
#include <stdexcept>

namespace {

void WriteWhereNothingIs() {
    // Not null itself: the compiler would make a trap of it.
    volatile auto* const nowhere = reinterpret_cast<volatile int*>(std::uintptr_t{16});
    *nowhere = 1;
}

}  // namespace

// Windows is given the exception code and four parameters, of which the first tells the version of the layout.
void ThrowLikeAnotherCompiler() {
    constexpr DWORD kVisualCppException = 0xE06D7363;
    constexpr ULONG_PTR kLayoutVersion = 0x19930520;
    const ULONG_PTR parameters[4] = {kLayoutVersion, 0, 0, 0};
    RaiseException(kVisualCppException, EXCEPTION_NONCONTINUABLE, 4, parameters);
}

void ThrowAsAsked(doubles::Throw what) {
    if (what == doubles::Throw::kAccessViolation) {
        WriteWhereNothingIs();
    }
    if (what == doubles::Throw::kForeignException) {
        ThrowLikeAnotherCompiler();
    }
    if (what == doubles::Throw::kCppException) {
        throw std::runtime_error("thrown by a double");
    }
}
