// Who is to blame for where a thread is: the innermost code that is not the system's. A crash inside the C runtime that
// was called with a bad pointer is the caller's.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "simhost/watch/CallStack.h"

namespace simhost {

struct Culprit {
    std::string called;          // the system's function that it is in, by the name that people call it; "" for none
    std::optional<Frame> code;   // the innermost code that is not the system's
    std::optional<Frame> guest;  // behind code of this program: the innermost that is not its own either
    std::optional<Frame> top;    // the innermost frame of all
};

// `program`: the host's own program, which is blamed for itself but has been called by somebody.
Culprit FindCulprit(const std::vector<Frame>& stack, const std::filesystem::path& program);

// The file name of the module to blame; empty when none is known. The host's own program is blamed only when no other
// has called it.
std::string ModuleOf(const Culprit& culprit);

// "in Function of Module (file:line), called by ...; at Module+0x1234".
std::string InWords(const Culprit& culprit);
// The function, or the place in the module when it has no known name.
std::string InWords(const Frame& frame);

}  // namespace simhost
