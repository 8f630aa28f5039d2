#include "simhost/sweep/UnloadAll.h"

#include <windows.h>
#define PSAPI_VERSION 2
#include <psapi.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "doubles/common/Text.h"

namespace simhost::sweep {

namespace {

// A library is held a few times; a plug-in may hold itself once for each document.
constexpr int kMostReferences = 10000;

struct Library {
    HMODULE module;
    std::filesystem::path path;
};

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
std::vector<Library> LibrariesIn(const std::filesystem::path& folder) {
    std::vector<HMODULE> modules(1024);
    DWORD bytes = 0;
    K32EnumProcessModules(GetCurrentProcess(), modules.data(), static_cast<DWORD>(modules.size() * sizeof(HMODULE)),
                          &bytes);
    modules.resize(std::min<std::size_t>(modules.size(), bytes / sizeof(HMODULE)));
    std::vector<Library> libraries;
    for (const HMODULE module : modules) {
        if (module != GetModuleHandleW(nullptr) && LiesIn(PathOf(module), folder)) {
            libraries.push_back({module, PathOf(module)});
        }
    }
    std::stable_partition(libraries.begin(), libraries.end(),
                          [](const Library& library) { return library.path.extension() == L".aip"; });
    return libraries;
}

void Unload(const Library& library) {
    for (int i = 0; i < kMostReferences && GetModuleHandleW(library.path.c_str()) == library.module; ++i) {
        FreeLibrary(library.module);
    }
    if (GetModuleHandleW(library.path.c_str()) == library.module) {
        throw std::runtime_error(Utf8(library.path.wstring()) + " cannot be unloaded");
    }
}

}  // namespace

void UnloadAllOf(const std::filesystem::path& folder) {
    for (const Library& library : LibrariesIn(folder)) {
        Unload(library);
    }
}

}  // namespace simhost::sweep
