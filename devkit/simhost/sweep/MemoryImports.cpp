#include "simhost/sweep/MemoryImports.h"

#include <cerrno>
#include <cstddef>

#include "doubles/common/ImportPatch.h"
#include "simhost/sweep/Holdings.h"
#include "simhost/sweep/Injector.h"

namespace simhost::sweep {

namespace {

// As the plug-in had them.
void* (*sMalloc)(std::size_t) = nullptr;
void* (*sCalloc)(std::size_t, std::size_t) = nullptr;
void* (*sRealloc)(void*, std::size_t) = nullptr;
void (*sFree)(void*) = nullptr;

bool Fails(const char* function) {
    const bool fails = TheInjector().Fails(Kind::kAllocation, function);
    if (fails) {
        errno = ENOMEM;
    }
    return fails;
}

void* Noted(const char* function, void* block) {
    if (block != nullptr) {
        TheHoldings().Taken(function, block);
    }
    return block;
}

void* Malloc(std::size_t size) { return Fails("malloc") ? nullptr : Noted("malloc", sMalloc(size)); }

void* Calloc(std::size_t count, std::size_t size) {
    return Fails("calloc") ? nullptr : Noted("calloc", sCalloc(count, size));
}

void* Realloc(void* block, std::size_t size) {
    if (Fails("realloc")) {
        return nullptr;
    }
    void* const moved = sRealloc(block, size);
    if (block == nullptr) {
        return Noted("realloc", moved);
    }
    if (moved != nullptr) {
        TheHoldings().Moved(block, moved);
    } else if (size == 0) {
        TheHoldings().GivenBack(block);
    }
    return moved;
}

void Free(void* block) {
    if (block != nullptr) {
        TheHoldings().GivenBack(block);
    }
    sFree(block);
}

template <class Function>
void Replace(HMODULE module, const char* name, Function*& real, Function* substitute) {
    if (void* const before = ImportedFunction(module, name)) {
        real = reinterpret_cast<Function*>(before);
        ReplaceImport(module, name, AsReplacement(substitute));
    }
}

}  // namespace

void SubstituteMalloc(HMODULE module) { Replace(module, "malloc", sMalloc, &Malloc); }
void SubstituteCalloc(HMODULE module) { Replace(module, "calloc", sCalloc, &Calloc); }
void SubstituteRealloc(HMODULE module) { Replace(module, "realloc", sRealloc, &Realloc); }
void SubstituteFree(HMODULE module) { Replace(module, "free", sFree, &Free); }

}  // namespace simhost::sweep
