// Acquiring, using and releasing a host suite, and turning host results into exceptions. Host error codes travel as
// plain 32-bit integers: as results, and inside an operation as thrown integers that the operation's own handler turns
// back into its result.
// Thread: main.
#pragma once

#include "host/BasicSuite.h"

// The basic suite of the latest message; null before the first one. The host's.
extern const SPBasicSuite* sBasicSuite;

// Whether two caller or selector names are the same, as the host sees it. Null is equal to nothing.
bool TokensAreEqual(const char* token1, const char* token2);

// Logs and throws the code when it is not 0.
void ThrowIfError(std::int32_t code);

// Asks the host for a suite; logs and throws the host's code when it refuses. A suite acquired is released once.
void AcquireSuiteOrThrow(const char* name, std::int32_t version, const void** suitePointer);

// Gives the suite back and nulls the pointer; does nothing for a null pointer.
void ReleaseSuiteIfHeld(const char* name, std::int32_t version, const void** suitePointer);

// A suite that one operation acquires for a moment: acquired when asked to, released at the end of the scope or before.
template <class Suite>
class MomentarySuite {
  public:
    MomentarySuite(const char* name, std::int32_t version) noexcept : mName(name), mVersion(version) {}
    MomentarySuite(const MomentarySuite&) = delete;
    MomentarySuite& operator=(const MomentarySuite&) = delete;
    ~MomentarySuite() { ReleaseIfHeld(); }

    void AcquireOrThrow() { AcquireSuiteOrThrow(mName, mVersion, &mSuite); }
    void ReleaseIfHeld() { ReleaseSuiteIfHeld(mName, mVersion, &mSuite); }
    const Suite* operator->() const noexcept { return static_cast<const Suite*>(mSuite); }

  private:
    const char* mName;
    std::int32_t mVersion;
    const void* mSuite = nullptr;
};
