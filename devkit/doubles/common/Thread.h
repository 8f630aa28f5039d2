// Threads and locks of Windows itself. The compiler is built without a thread library, because that library would
// change the process of every program that it is linked into: there is no std::thread and no std::mutex.
#pragma once

#include <windows.h>

#include <memory>
#include <mutex>  // std::lock_guard
#include <stdexcept>
#include <utility>

// Fits std::lock_guard.
// Thread: any.
class Mutex {
  public:
    Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() noexcept { AcquireSRWLockExclusive(&mLock); }
    void unlock() noexcept { ReleaseSRWLockExclusive(&mLock); }

  private:
    SRWLOCK mLock = SRWLOCK_INIT;
};

// One thread, which runs a function without arguments and must not let an exception out. Waits for its end when it is
// destroyed, unless it was detached.
// Thread: the one that made it.
class Thread {
  public:
    Thread() noexcept = default;
    // Throws std::runtime_error when Windows refuses the thread.
    template <class Function>
    explicit Thread(Function function) {
        auto owned = std::make_unique<Function>(std::move(function));
        mHandle = CreateThread(nullptr, 0, &Run<Function>, owned.get(), 0, nullptr);
        if (mHandle == nullptr) {
            throw std::runtime_error("Windows starts no thread");
        }
        static_cast<void>(owned.release());
    }
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    Thread(Thread&& other) noexcept : mHandle(std::exchange(other.mHandle, nullptr)) {}
    Thread& operator=(Thread&& other) noexcept {
        std::swap(mHandle, other.mHandle);
        return *this;
    }
    ~Thread() { Join(); }

    // Waits for its end. Does nothing for a thread that was joined or detached.
    void Join() noexcept {
        if (mHandle != nullptr) {
            WaitForSingleObject(mHandle, INFINITE);
            Detach();
        }
    }
    // Lets it run on by itself.
    void Detach() noexcept {
        if (mHandle != nullptr) {
            CloseHandle(std::exchange(mHandle, nullptr));
        }
    }

  private:
    template <class Function>
    static DWORD WINAPI Run(void* argument) {
        const std::unique_ptr<Function> function(static_cast<Function*>(argument));
        (*function)();
        return 0;
    }

    HANDLE mHandle = nullptr;
};
