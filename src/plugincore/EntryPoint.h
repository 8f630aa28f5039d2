#pragma once

#include <windows.h>

#include <cstdint>

#include "support/ForeignExceptionGuard.h"

// One entry of the PluginCore library: a function pointer that is called like the function. The PluginCore is built
// with another compiler; an exception that it throws out of an entry becomes a ForeignException here, so that the
// frames of the caller unwind. Calling an entry that the library lacks is the caller's error.
template <class Signature>
class EntryPoint;

template <class... Arguments>
class EntryPoint<std::int32_t(Arguments...)> {
  public:
    using Function = std::int32_t (*)(Arguments...);

    void Bind(FARPROC address) noexcept { mFunction = reinterpret_cast<Function>(reinterpret_cast<void*>(address)); }
    bool IsNull() const noexcept { return mFunction == nullptr; }

    std::int32_t operator()(Arguments... arguments) const {
        return CallForeignCode([&] { return mFunction(arguments...); });
    }

  private:
    Function mFunction = nullptr;
};
