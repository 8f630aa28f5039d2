// Thread: main.
#pragma once

#include <windows.h>

#include <cstdint>

#include "support/ForeignExceptionGuard.h"
#include "support/ResultCodes.h"

// One entry of the PluginCore library: a function pointer that is called like the function. The PluginCore is built
// with another compiler; an exception that it throws out of an entry becomes a ForeignException here, so that the
// frames of the caller unwind.
//
// A library that accepts the plug-in's version may still lack entries. Calling one that is missing answers
// kLookupNotFound and writes nothing: the caller goes on as if the PluginCore had nothing to say. The binding has
// logged the missing name once.
template <class Signature>
class EntryPoint;

template <class... Arguments>
class EntryPoint<std::int32_t(Arguments...)> {
  public:
    using Function = std::int32_t (*)(Arguments...);

    void Bind(FARPROC address) noexcept { mFunction = reinterpret_cast<Function>(reinterpret_cast<void*>(address)); }
    bool IsNull() const noexcept { return mFunction == nullptr; }

    std::int32_t operator()(Arguments... arguments) const {
        if (mFunction == nullptr) {
            return kLookupNotFound;
        }
        return CallForeignCode([&] { return mFunction(arguments...); });
    }

  private:
    Function mFunction = nullptr;
};
