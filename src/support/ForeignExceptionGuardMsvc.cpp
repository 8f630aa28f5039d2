#include <windows.h>

#include "support/ForeignExceptionGuard.h"

namespace {

constexpr DWORD kVisualCppException = 0xE06D7363;

}  // namespace

extern "C" int RunStoppingForeignExceptions(void (*function)(void* context), void* context) {
    __try {
        function(context);
    } __except (GetExceptionCode() == kVisualCppException ? EXCEPTION_EXECUTE_HANDLER : EXCEPTION_CONTINUE_SEARCH) {
        return 1;
    }
    return 0;
}
