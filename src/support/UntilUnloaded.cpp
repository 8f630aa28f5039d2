#include "support/UntilUnloaded.h"

#include <utility>

namespace {

ModuleObject* sNewest = nullptr;

}  // namespace

ModuleObject::ModuleObject(Destructor destroy) noexcept : mDestroy(destroy), mOlder(std::exchange(sNewest, this)) {}

void ModuleObject::DestroyAll() noexcept {
    while (ModuleObject* const object = sNewest) {
        sNewest = object->mOlder;
        object->mDestroy(*object);
    }
}
