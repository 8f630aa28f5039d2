#include "doubles/common/ForeignException.h"

#include <windows.h>

#include <stdexcept>

namespace {

// How a C++ exception of Visual C++ appears to Windows: its code, and four parameters of which the first tells the
// version of the layout. The libraries that the substitutes stand for are built with that compiler.
void RaiseVisualCppException() {
    constexpr DWORD kVisualCppException = 0xE06D7363;
    constexpr ULONG_PTR kLayoutVersion = 0x19930520;
    const ULONG_PTR parameters[4] = {kLayoutVersion, 0, 0, 0};
    RaiseException(kVisualCppException, EXCEPTION_NONCONTINUABLE, 4, parameters);
}

}  // namespace

void ThrowAsAsked(Throw what) {
    if (what == Throw::kForeignException) {
        RaiseVisualCppException();
    }
    if (what == Throw::kCppException) {
        throw std::runtime_error("thrown by a substitute library");
    }
}
