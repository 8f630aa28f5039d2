#include "support/fakes/ImportPatch.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

unsigned char* Base() { return reinterpret_cast<unsigned char*>(GetModuleHandleW(nullptr)); }

template <class Type>
Type* At(DWORD offset) {
    return reinterpret_cast<Type*>(Base() + offset);
}

// The place in the import table that holds the function's address.
void** FindSlot(const char* function) {
    const auto* const dos = At<IMAGE_DOS_HEADER>(0);
    const auto* const headers = At<IMAGE_NT_HEADERS>(static_cast<DWORD>(dos->e_lfanew));
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (const auto* module = At<IMAGE_IMPORT_DESCRIPTOR>(imports); module->Name != 0; ++module) {
        const auto* name = At<IMAGE_THUNK_DATA>(module->OriginalFirstThunk);
        auto* slot = At<IMAGE_THUNK_DATA>(module->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
                continue;
            }
            const auto* const byName = At<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(name->u1.AddressOfData));
            if (std::strcmp(reinterpret_cast<const char*>(byName->Name), function) == 0) {
                return reinterpret_cast<void**>(&slot->u1.Function);
            }
        }
    }
    std::printf("This program does not import %s, so it cannot be replaced.\n", function);
    std::exit(1);
}

void Write(void** slot, void* value) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection);
    *slot = value;
    VirtualProtect(slot, sizeof(*slot), protection, &protection);
}

}  // namespace

ImportPatch::ImportPatch(const char* function, void* replacement) : mSlot(FindSlot(function)), mOriginal(*mSlot) {
    Write(mSlot, replacement);
}

ImportPatch::~ImportPatch() { Write(mSlot, mOriginal); }
