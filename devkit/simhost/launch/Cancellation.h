// Somebody presses Ctrl+C, closes the console or logs off: the run is given up in order, so that everything is put
// back.
#pragma once

#include <exception>

namespace simhost {

class Cancelled : public std::exception {
  public:
    const char* what() const noexcept override { return "cancelled"; }
};

// From now on such a request is noted instead of ending the process. For the rest of the process's life.
void ListenForCancellation();

// Throws Cancelled when there was a request.
void ThrowIfCancelled();

}  // namespace simhost
