// The error object that a failing call of the host's string and path objects becomes.
#pragma once

#include <exception>

#include "host/HostTypes.h"

namespace ai {

class Error : public std::exception {
  public:
    explicit Error(AIErr code) noexcept : mCode(code) {}
    AIErr Code() const noexcept { return mCode; }
    const char* what() const noexcept override { return "the host refused an operation on a string or a path"; }

  private:
    AIErr mCode;
};

// Throws the error object of a non-zero result.
inline void ThrowIfRefused(AIErr code) {
    if (code != 0) {
        throw Error(code);
    }
}

}  // namespace ai
