#pragma once

#include <windows.h>

#include "doubles/common/ImportPatch.h"

namespace simhost::contract {

// Keeps what the library called under that name, and replaces it. A library need not import the function.
template <class Function>
void ReplaceKept(HMODULE library, const char* name, Function** original, Function* replacement) {
    if (void* const imported = ImportedFunction(library, name)) {
        *original = reinterpret_cast<Function*>(imported);
        ReplaceImport(library, name, AsReplacement(replacement));
    }
}

}  // namespace simhost::contract
