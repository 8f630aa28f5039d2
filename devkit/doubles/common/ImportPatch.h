// Replaces a function that a loaded module imports, by writing into the module's import table: the product needs no
// seam for it. Only captureless functions fit; they keep their state in statics.
//
// Thread: the one that runs the module's code. A call that is under way may still get the old function: the compiler
// may read an imported address once per function. A module that links the C runtime statically imports none of it, so
// nothing of it can be replaced there.
#pragma once

#include <windows.h>

// For the `replacement` arguments.
template <class Function>
void* AsReplacement(Function* function) {
    return reinterpret_cast<void*>(function);
}

// What the module calls under this name now; null when it does not import the function by name.
void* ImportedFunction(HMODULE module, const char* function);

// Replaces the function until the module is unloaded; false when the module does not import it by name.
bool ReplaceImport(HMODULE module, const char* function, void* replacement);

// Puts back all functions that the module imports by name, as Windows finds them: nobody has replaced any.
void RestoreImports(HMODULE module);

// Replaces the function as long as the patch lives. Several patches of one function end in reverse order.
class ImportPatch {
  public:
    // `function` is the imported name, for example "MessageBoxA"; `replacement` has its exact signature. Ends the
    // process with a message when the module does not import the function: a test of nothing must not pass.
    ImportPatch(HMODULE module, const char* function, void* replacement);
    // In the program itself.
    ImportPatch(const char* function, void* replacement);
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;
    ~ImportPatch();

    // The function that was replaced.
    template <class Function>
    Function Original() const {
        return reinterpret_cast<Function>(mOriginal);
    }

  private:
    void** mSlot;
    void* mOriginal;
};
