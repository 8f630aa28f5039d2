// Replaces one Windows function for the code linked into this test program, as long as the patch lives: the product
// needs no seam for it. Only captureless functions fit; give them their state through statics of the test.
#pragma once

class ImportPatch {
  public:
    // `function` is the imported name, for example "MessageBoxA"; `replacement` has its exact signature. Ends the
    // program with a message when this program does not import the function: a test of nothing must not pass.
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

// For the replacement argument.
template <class Function>
void* AsReplacement(Function* function) {
    return reinterpret_cast<void*>(function);
}
