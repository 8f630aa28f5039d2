#include "simhost/plugin/AllReferences.h"

#include <windows.h>
#define PSAPI_VERSION 2
#include <psapi.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

// A library is held a few times; a plug-in may hold itself once for each document.
constexpr int kMostReferences = 10'000;

std::filesystem::path PathOf(HMODULE module) {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

bool LiesIn(const std::filesystem::path& file, const std::filesystem::path& folder) {
    const std::wstring start = folder.wstring() + L"\\";
    return file.wstring().size() > start.size() &&
           CompareStringOrdinal(file.c_str(), static_cast<int>(start.size()), start.c_str(), -1, TRUE) == CSTR_EQUAL;
}

// The program itself is none.
std::vector<std::filesystem::path> LibrariesIn(const std::filesystem::path& folder) {
    std::vector<HMODULE> modules(1024);
    DWORD bytes = 0;
    K32EnumProcessModules(GetCurrentProcess(), modules.data(), static_cast<DWORD>(modules.size() * sizeof(HMODULE)),
                          &bytes);
    modules.resize(std::min<std::size_t>(modules.size(), bytes / sizeof(HMODULE)));
    std::vector<std::filesystem::path> libraries;
    for (const HMODULE module : modules) {
        if (module != GetModuleHandleW(nullptr) && LiesIn(PathOf(module), folder)) {
            libraries.push_back(PathOf(module));
        }
    }
    std::stable_partition(libraries.begin(), libraries.end(),
                          [](const std::filesystem::path& library) { return library.extension() == L".aip"; });
    return libraries;
}

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

void FreeAllReferencesIn(const std::filesystem::path& folder) {
    for (const std::filesystem::path& library : LibrariesIn(folder)) {
        FreeAllReferences(library);
    }
}

}  // namespace simhost
