// Objects outside of functions that live as long as the module. They are destroyed when the module alone is unloaded,
// so that nothing of it stays behind. When the process ends they are left as they are: libraries that end after the
// plug-in may still send a message, ask for the port or create a window, and Windows takes the memory back anyway.
//
// A static object with a destructor of its own would be destroyed in both cases; scripts/second-compiler refuses one.
//
// Thread: the one that loads and unloads the module.
#pragma once

#include <new>
#include <type_traits>

class ModuleObject {
  public:
    ModuleObject(const ModuleObject&) = delete;
    ModuleObject& operator=(const ModuleObject&) = delete;

    // In the reverse order of their construction. For DllMain; nothing may use them afterwards.
    static void DestroyAll() noexcept;

  protected:
    using Destructor = void (*)(ModuleObject& object) noexcept;

    explicit ModuleObject(Destructor destroy) noexcept;
    ~ModuleObject() = default;

  private:
    Destructor mDestroy;
    ModuleObject* mOlder;  // not owned; null for the oldest
};

template <class Value>
class UntilUnloaded final : public ModuleObject {
  public:
    UntilUnloaded() : ModuleObject(Destroy), mValue(*new (mStorage) Value()) {
        static_assert(std::is_trivially_destructible_v<UntilUnloaded>, "the end of the process would destroy it");
    }

    Value& operator*() const noexcept { return mValue; }
    Value* operator->() const noexcept { return &mValue; }

  private:
    static void Destroy(ModuleObject& object) noexcept { static_cast<UntilUnloaded&>(object).mValue.~Value(); }

    // Mutable: the objects are const, what they hold is not.
    alignas(Value) mutable unsigned char mStorage[sizeof(Value)];
    Value& mValue;
};
