#pragma once

#include <windows.h>

#include <cstdint>
#include <exception>

#include "support/ForeignExceptionGuard.h"

// Thrown where an entry is called that is not there, for want of the entry or of the whole library: the message is then
// given up, the host lives on.
class MissingEntry : public std::exception {
  public:
    const char* what() const noexcept override { return "the PluginCore or one of its entries is missing"; }
};

// One entry of the PluginCore library: a function pointer that is called like the function. The PluginCore is built
// with another compiler; an exception that it throws out of an entry becomes a ForeignException here, so that the
// frames of the caller unwind.
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
            throw MissingEntry();
        }
        return CallForeignCode([&] { return mFunction(arguments...); });
    }

  private:
    Function mFunction = nullptr;
};
