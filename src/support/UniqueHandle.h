// Move-only owner of an operating-system handle. A handle's kind is its type: `Traits` names the handle, the value that
// means "none" and how it is closed.
#pragma once

#include <utility>

template <class Traits>
class UniqueHandle {
  public:
    using Handle = typename Traits::Handle;

    UniqueHandle() noexcept = default;
    explicit UniqueHandle(Handle handle) noexcept : mHandle(handle) {}
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    UniqueHandle(UniqueHandle&& other) noexcept : mHandle(other.Release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other) {
            Reset();
            mHandle = other.Release();
        }
        return *this;
    }
    ~UniqueHandle() { Reset(); }

    explicit operator bool() const noexcept { return mHandle != Traits::None(); }
    Handle Get() const noexcept { return mHandle; }

    // Gives the handle up without closing it.
    Handle Release() noexcept { return std::exchange(mHandle, Traits::None()); }

  private:
    void Reset() noexcept {
        if (mHandle != Traits::None()) {
            Traits::Close(Release());
        }
    }

    Handle mHandle = Traits::None();
};
