// Marks memory as the test double's own. Fault injection of allocations fails only what the code under test asks for,
// so it passes over allocations that are made while a mark is set.
#pragma once

#include <atomic>

// Sets the mark for its lifetime. Marks nest.
class OwnMemory {
  public:
    OwnMemory() { ++sDepth; }
    OwnMemory(const OwnMemory&) = delete;
    OwnMemory& operator=(const OwnMemory&) = delete;
    ~OwnMemory() { --sDepth; }

    static bool IsMarked() { return sDepth > 0; }

    // Takes one mark away for its lifetime: for calls out of a double, back into the code under test.
    class Pause {
      public:
        Pause() { --sDepth; }
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
        ~Pause() { ++sDepth; }
    };

  private:
    // Of all threads together: thread-local storage allocates when it is first used.
    static inline std::atomic<int> sDepth = 0;
};
