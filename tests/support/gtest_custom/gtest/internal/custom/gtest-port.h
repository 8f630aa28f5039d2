// GoogleTest's place for what a platform does differently; it shadows the empty file of that name in its sources. The
// compiler has no std::condition_variable, in which the framework holds new threads back.
#ifndef GOOGLETEST_INCLUDE_GTEST_INTERNAL_CUSTOM_GTEST_PORT_H_
#define GOOGLETEST_INCLUDE_GTEST_INTERNAL_CUSTOM_GTEST_PORT_H_

#include <windows.h>

#define GTEST_HAS_NOTIFICATION_ 1

namespace testing::internal {

class Notification {
  public:
    Notification() = default;
    Notification(const Notification&) = delete;
    Notification& operator=(const Notification&) = delete;
    ~Notification() { CloseHandle(mEvent); }

    void Notify() { SetEvent(mEvent); }
    void WaitForNotification() { WaitForSingleObject(mEvent, INFINITE); }

  private:
    HANDLE mEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
};

}  // namespace testing::internal

#endif
