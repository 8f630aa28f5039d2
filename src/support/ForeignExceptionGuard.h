// Stops C++ exceptions that code built by another compiler throws: the host and the PluginCore are built with Visual
// C++. GCC's `catch (...)` does not see them: without this guard the process dies.
#pragma once

#include <type_traits>
#include <utility>

#include "support/Errors.h"

// Calls function(context) and returns 0. When a C++ exception of Visual C++ (Windows exception code 0xE06D7363) leaves
// the call, returns 1 instead; frames of our own between the thrower and the guard are cut without running their
// destructors. So the guard stands close to a call of the PluginCore. The host's operations are too many for that: it
// stands around those bodies that must put something right whatever the host throws; what the cut frames held of the
// host is not given back.
//
// Every other exception of Windows passes through, on purpose. An access violation is no exception of C++: memory may
// be damaged, what the frames on the way would have tidied up is not in a known state, and to go on would only move the
// crash to a place that says nothing. The host's crash report has to see it where it happened.
// Thread: any.
extern "C" int RunStoppingForeignExceptions(void (*function)(void* context), void* context);

// Runs call() and returns its result; a foreign exception that leaves it becomes a ForeignException, thrown here, so
// that our own frames unwind as usual.
template <class Call>
std::invoke_result_t<Call&> CallForeignCode(Call call) {
    using Result = std::invoke_result_t<Call&>;
    if constexpr (std::is_void_v<Result>) {
        CallForeignCode([&] {
            call();
            return true;
        });
    } else {
        struct Frame {
            Call& call;
            Result result;
        } frame{call, {}};
        const auto run = [](void* context) {
            auto* const self = static_cast<Frame*>(context);
            self->result = self->call();
        };
        if (RunStoppingForeignExceptions(run, &frame) != 0) {
            throw ForeignException();
        }
        return std::move(frame.result);
    }
}
