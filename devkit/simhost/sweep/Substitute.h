// A function in the place of an imported one: counts the call, fails or passes it on, and notes what is taken and given
// back. The kind of the row is a type, so that each row has a function of its own.
//
// Thread: any.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>

#include "doubles/common/ImportPatch.h"
#include "simhost/sweep/Holdings.h"
#include "simhost/sweep/Injector.h"

namespace simhost::sweep {

// A name as a template's argument.
template <std::size_t kSize>
struct Name {
    char text[kSize]{};
    // Implicit: the name is written as a literal.
    constexpr Name(const char (&literal)[kSize]) { std::copy_n(literal, kSize, text); }
};

enum class Effect {
    kNothing,
    kTakes,            // the result, unless it is null or INVALID_HANDLE_VALUE
    kTakesReference,   // to a library, by GetModuleHandleEx
    kGivesBack,        // the first argument, unless the result is null
    kGivesBackAlways,  // the first argument, whatever the result is
};

template <class Result>
bool IsSomething(Result result) {
    if constexpr (std::is_pointer_v<Result>) {
        return result != nullptr && reinterpret_cast<std::intptr_t>(result) != -1;
    } else {
        return result != 0;
    }
}

template <class Result>
Result FailureOf(std::intptr_t value) {
    if constexpr (std::is_pointer_v<Result>) {
        return reinterpret_cast<Result>(value);
    } else {
        return static_cast<Result>(value);
    }
}

// `kFailure`: the result of a call that fails. `kError`: the last error of Windows then, or `errno` when it is
// negative.
template <Name kName, class Function, std::intptr_t kFailure, int kError, Effect kEffect>
struct Substitute;

template <Name kName, class Result, class... Arguments, std::intptr_t kFailure, int kError, Effect kEffect>
struct Substitute<kName, Result(Arguments...), kFailure, kError, kEffect> {
    using Function = Result(Arguments...);
    static inline Function* sReal = nullptr;

    static Result Call(Arguments... arguments) {
        if (TheInjector().Fails(Kind::kImport, kName.text)) {
            if constexpr (kError < 0) {
                errno = -kError;
            } else {
                SetLastError(kError);
            }
            return FailureOf<Result>(kFailure);
        }
        [[maybe_unused]] const void* const given = FirstPointer(arguments...);
        const Result result = sReal(arguments...);
        // The notes must not change it.
        const DWORD error = GetLastError();
        if constexpr (kEffect == Effect::kTakes) {
            if (IsSomething(result)) {
                TheHoldings().Taken(kName.text, reinterpret_cast<void*>(result));
            }
        } else if constexpr (kEffect == Effect::kTakesReference) {
            const auto& [flags, name, module] = std::tie(arguments...);
            // Who holds himself means to stay.
            if (result != 0 && *module != TheInjector().Plugin() &&
                (flags & GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT) == 0) {
                TheHoldings().Taken(kName.text, *module);
            }
        } else if constexpr (kEffect == Effect::kGivesBack || kEffect == Effect::kGivesBackAlways) {
            if (kEffect == Effect::kGivesBackAlways || IsSomething(result)) {
                TheHoldings().GivenBack(given);
            }
        }
        SetLastError(error);
        return result;
    }

    static void Install(HMODULE module) {
        if (void* const before = ImportedFunction(module, kName.text)) {
            sReal = reinterpret_cast<Function*>(before);
            ReplaceImport(module, kName.text, AsReplacement(&Call));
        }
    }

  private:
    template <class First, class... Others>
    static const void* FirstPointer(First first, Others...) {
        if constexpr (std::is_pointer_v<First>) {
            return reinterpret_cast<const void*>(first);
        } else {
            return nullptr;
        }
    }
    static const void* FirstPointer() { return nullptr; }
};

}  // namespace simhost::sweep
