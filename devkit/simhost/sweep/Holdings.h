// What the plug-in has taken from Windows and the C runtime and not given back: blocks of memory, handles, references
// to libraries, hooks, files. Seen in its own calls.
//
// Thread: any.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "doubles/common/Thread.h"

namespace simhost::sweep {

struct Held {
    const char* by;                      // the function that gave it
    std::vector<std::uint32_t> returns;  // see CountedCall
};

class Holdings {
  public:
    void Forget();
    void Taken(const char* by, void* thing);
    void GivenBack(const void* thing);
    // A block of memory was moved.
    void Moved(void* from, void* to);

    // By the function that gave them.
    std::map<std::string, std::int64_t> Counts() const;
    std::vector<Held> All() const;
    // Of one function.
    std::vector<void*> GivenBy(const char* function) const;

  private:
    mutable Mutex mMutex;
    std::multimap<void*, Held, std::less<>> mHeld;  // a library is held several times
};

// Those of the plug-in in this process.
Holdings& TheHoldings();

}  // namespace simhost::sweep
