// The host's objects of one kind, known to the plug-in by opaque handles. A handle is a number that points nowhere and
// is never used again, so that the use of one that was given back is noticed instead of crashing.
//
// Thread: main.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

namespace simhost {

// Where the handles of tables begin that are made from now on: a host that is renewed gives other handles than before.
class HandleRange {
  public:
    static void Restart() { sBegin = 0; }
    static void Next() { sBegin += std::uintptr_t{1} << 28; }
    static std::uintptr_t Begin() { return sBegin; }

  private:
    static inline std::uintptr_t sBegin = 0;
};

template <class Object>
class ObjectTable {
  public:
    // `kind` keeps the handles of different kinds apart.
    explicit ObjectTable(std::uintptr_t kind) : mFirst((kind << 40) + HandleRange::Begin()), mLast(mFirst) {}

    void* Add(Object object) {
        const std::uintptr_t handle = mReused != 0 ? std::exchange(mReused, 0) : mLast += 16;
        mObjects.insert_or_assign(handle, std::move(object));
        return reinterpret_cast<void*>(handle);
    }

    // Null for a handle that was given back, or never given out.
    Object* Find(const void* handle) {
        const auto found = mObjects.find(reinterpret_cast<std::uintptr_t>(handle));
        return found == mObjects.end() ? nullptr : &found->second;
    }

    bool Remove(const void* handle) { return mObjects.erase(reinterpret_cast<std::uintptr_t>(handle)) != 0; }

    // The next Add() gives this handle again, as a host does whose handles are addresses.
    void Reuse(const void* handle) { mReused = reinterpret_cast<std::uintptr_t>(handle); }

    // Whether the handle was alive once.
    bool WasGiven(const void* handle) const {
        const auto number = reinterpret_cast<std::uintptr_t>(handle);
        return number > mFirst && number <= mLast && number % 16 == 0;
    }

    std::size_t Size() const { return mObjects.size(); }
    std::map<std::uintptr_t, Object>& Objects() { return mObjects; }
    const std::map<std::uintptr_t, Object>& Objects() const { return mObjects; }

  private:
    std::uintptr_t mFirst;
    std::uintptr_t mLast;
    std::uintptr_t mReused = 0;
    std::map<std::uintptr_t, Object> mObjects;
};

}  // namespace simhost
