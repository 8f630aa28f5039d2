// What the PluginCore, the host and the panel library may do to the plug-in: throw a C++ exception that was built by
// another compiler, which this one's frames do not see.
#pragma once

#include <windows.h>

inline void ThrowLikeAnotherCompiler() {
    constexpr DWORD kVisualCppException = 0xE06D7363;
    const ULONG_PTR parameters[] = {0x19930520, 0, 0, 0};
    RaiseException(kVisualCppException, EXCEPTION_NONCONTINUABLE, 4, parameters);
}
