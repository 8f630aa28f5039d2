#include "doubles/common/ImportPatch.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// The module in memory, whose tables refer to each other by offsets from its beginning.
class Image {
  public:
    explicit Image(HMODULE module) : mBase(reinterpret_cast<unsigned char*>(module)) {}

    // Null when the function is not imported by name.
    void** SlotOf(const char* function) const {
        const DWORD imports = Headers()->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
        if (imports == 0) {
            return nullptr;
        }
        for (const auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(imports); library->Name != 0; ++library) {
            if (void** const slot = SlotOf(function, *library)) {
                return slot;
            }
        }
        return nullptr;
    }

    // Calls `visit` with the library, the name and the slot of each function that is imported by name.
    template <class Visit>
    void ForEachNamed(Visit visit) const {
        const DWORD imports = Headers()->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
        if (imports == 0) {
            return;
        }
        for (const auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(imports); library->Name != 0; ++library) {
            if (library->OriginalFirstThunk == 0) {
                continue;
            }
            const auto* name = At<IMAGE_THUNK_DATA>(library->OriginalFirstThunk);
            auto* slot = At<void*>(library->FirstThunk);
            for (; name->u1.AddressOfData != 0; ++name, ++slot) {
                if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
                    visit(At<const char>(library->Name), At<IMAGE_IMPORT_BY_NAME>(name->u1.AddressOfData)->Name, slot);
                }
            }
        }
    }

  private:
    template <class Type>
    Type* At(ULONGLONG offset) const {
        return reinterpret_cast<Type*>(mBase + offset);
    }

    const IMAGE_NT_HEADERS* Headers() const {
        return At<IMAGE_NT_HEADERS>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
    }

    void** SlotOf(const char* function, const IMAGE_IMPORT_DESCRIPTOR& library) const {
        return library.OriginalFirstThunk == 0 ? SlotByAddress(function, library) : SlotByName(function, library);
    }

    // Names and addresses stand in two tables of the same order.
    void** SlotByName(const char* function, const IMAGE_IMPORT_DESCRIPTOR& library) const {
        const auto* name = At<IMAGE_THUNK_DATA>(library.OriginalFirstThunk);
        auto* slot = At<void*>(library.FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot) {
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) &&
                std::strcmp(At<IMAGE_IMPORT_BY_NAME>(name->u1.AddressOfData)->Name, function) == 0) {
                return slot;
            }
        }
        return nullptr;
    }

    // Some linkers write one table alone, in which Windows has replaced the names by the addresses. A function that was
    // replaced is not found again.
    void** SlotByAddress(const char* function, const IMAGE_IMPORT_DESCRIPTOR& library) const {
        const HMODULE module = GetModuleHandleA(At<const char>(library.Name));
        void* const address = module == nullptr ? nullptr : reinterpret_cast<void*>(GetProcAddress(module, function));
        for (auto* slot = At<void*>(library.FirstThunk); address != nullptr && *slot != nullptr; ++slot) {
            if (*slot == address) {
                return slot;
            }
        }
        return nullptr;
    }

    unsigned char* mBase;
};

void Write(void** slot, void* value) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection);
    *slot = value;
    VirtualProtect(slot, sizeof(*slot), protection, &protection);
}

void** RequiredSlot(HMODULE module, const char* function) {
    void** const slot = Image(module).SlotOf(function);
    if (slot == nullptr) {
        std::fprintf(stderr, "ImportPatch: the module does not import %s, so it cannot be replaced\n", function);
        std::fflush(stdout);
        std::_Exit(1);
    }
    return slot;
}

}  // namespace

void* ImportedFunction(HMODULE module, const char* function) {
    void** const slot = Image(module).SlotOf(function);
    return slot == nullptr ? nullptr : *slot;
}

bool ReplaceImport(HMODULE module, const char* function, void* replacement) {
    void** const slot = Image(module).SlotOf(function);
    if (slot != nullptr) {
        Write(slot, replacement);
    }
    return slot != nullptr;
}

void RestoreImports(HMODULE module) {
    Image(module).ForEachNamed([](const char* library, const char* name, void** slot) {
        void* const function = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(library), name));
        if (function != nullptr && *slot != function) {
            Write(slot, function);
        }
    });
}

ImportPatch::ImportPatch(HMODULE module, const char* function, void* replacement)
    : mSlot(RequiredSlot(module, function)), mOriginal(*mSlot) {
    Write(mSlot, replacement);
}

ImportPatch::ImportPatch(const char* function, void* replacement)
    : ImportPatch(GetModuleHandleW(nullptr), function, replacement) {}

ImportPatch::~ImportPatch() { Write(mSlot, mOriginal); }
