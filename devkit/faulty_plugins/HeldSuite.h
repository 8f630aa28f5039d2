// The host's suites for the faults, without any of the plug-in's own care for them.
#pragma once

#include <cstdint>

#include "host/Messages.h"

// The message that is being handled.
inline const SPMessageData* sMessage = nullptr;

template <class Suite>
const Suite* Acquire(const char* name, std::int32_t version) {
    const void* suite = nullptr;
    sMessage->basic->AcquireSuite(name, version, &suite);
    return static_cast<const Suite*>(suite);
}

// Holds a suite for the time of one fault.
template <class Suite>
class Held {
  public:
    Held(const char* name, std::int32_t version)
        : mName(name), mVersion(version), mSuite(Acquire<Suite>(name, version)) {}
    ~Held() { sMessage->basic->ReleaseSuite(mName, mVersion); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    const Suite* operator->() const { return mSuite; }

  private:
    const char* mName;
    std::int32_t mVersion;
    const Suite* mSuite;
};
