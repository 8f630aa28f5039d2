// How many operations of the counting host were called.
// Thread: main.
#pragma once

#include <cstddef>

namespace bench {

// Every operation of the counting host adds one. Only differences mean something.
inline std::size_t hostCalls = 0;

// The calls that doing the work once makes.
template <class Work>
std::size_t HostCallsOf(const Work& work) {
    const std::size_t before = hostCalls;
    work();
    return hostCalls - before;
}

}  // namespace bench
