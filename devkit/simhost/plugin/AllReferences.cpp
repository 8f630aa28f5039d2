#include "simhost/plugin/AllReferences.h"

#include <windows.h>

#include <stdexcept>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

constexpr int kMostReferences = 10'000;

}  // namespace

int FreeAllReferences(const std::filesystem::path& file) {
    for (int freed = 0; freed < kMostReferences; ++freed) {
        const HMODULE module = GetModuleHandleW(file.c_str());
        if (module == nullptr) {
            return freed;
        }
        FreeLibrary(module);
    }
    throw std::runtime_error(Utf8(file.wstring()) + " cannot be unloaded");
}

}  // namespace simhost
