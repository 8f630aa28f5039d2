#include "simhost/watch/Modules.h"

#include <dbghelp.h>

#include <algorithm>
#include <system_error>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

std::filesystem::path PathOf(HANDLE file) {
    std::wstring path(32768, L'\0');
    path.resize(GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0));
    return path;
}

// As the module's headers in the process tell it; enough for one page when they cannot be read.
std::uint64_t SizeOfImage(HANDLE process, const void* base) {
    const auto* const start = static_cast<const char*>(base);
    IMAGE_DOS_HEADER dos{};
    IMAGE_NT_HEADERS64 headers{};
    if (ReadProcessMemory(process, start, &dos, sizeof dos, nullptr) == 0 ||
        ReadProcessMemory(process, start + dos.e_lfanew, &headers, sizeof headers, nullptr) == 0) {
        return 0x1000;
    }
    return headers.OptionalHeader.SizeOfImage;
}

std::filesystem::path SystemFolder() {
    wchar_t path[MAX_PATH] = L"";
    GetSystemDirectoryW(path, MAX_PATH);
    return path;
}

bool StartsWith(const std::filesystem::path& path, const std::filesystem::path& folder) {
    // Paths of handles begin with "\\?\".
    std::wstring text = path.wstring();
    if (text.starts_with(L"\\\\?\\")) {
        text.erase(0, 4);
    }
    const std::wstring start = folder.wstring() + L"\\";
    return text.size() > start.size() &&
           CompareStringOrdinal(text.c_str(), static_cast<int>(start.size()), start.c_str(), -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

std::string Module::Name() const { return Utf8(path.filename().wstring()); }

Modules::Modules(HANDLE process, std::filesystem::path runFolder)
    : mProcess(process), mRunFolder(std::move(runFolder)) {
    // For walking stacks; symbols are looked up elsewhere, and never read here.
    SymSetOptions(SYMOPT_DEFERRED_LOADS | SYMOPT_FAIL_CRITICAL_ERRORS);
    SymInitialize(mProcess, nullptr, FALSE);
}

Modules::~Modules() { SymCleanup(mProcess); }

void Modules::Loaded(HANDLE file, const void* base) {
    const auto address = reinterpret_cast<std::uint64_t>(base);
    const std::filesystem::path path = file == nullptr ? std::filesystem::path() : PathOf(file);
    Module module{address, SizeOfImage(mProcess, base), path, IsSystem(path)};
    SymLoadModuleExW(mProcess, nullptr, path.c_str(), nullptr, address, static_cast<DWORD>(module.size), nullptr, 0);
    mModules.push_back(std::move(module));
}

void Modules::Unloaded(const void* base) {
    for (Module& module : mModules) {
        if (module.base == reinterpret_cast<std::uint64_t>(base) && module.isLoaded) {
            module.isLoaded = false;
            SymUnloadModule64(mProcess, module.base);
        }
    }
}

const Module* Modules::At(std::uint64_t address) const {
    const Module* former = nullptr;
    for (const Module& module : mModules) {
        if (address < module.base || address - module.base >= module.size) {
            continue;
        }
        if (module.isLoaded) {
            return &module;
        }
        former = &module;
    }
    return former;
}

// Wine's own libraries lie elsewhere on the disk, but each has a file of its name in the folder of the system.
bool Modules::IsSystem(const std::filesystem::path& path) const {
    const std::filesystem::path system = SystemFolder();
    std::error_code ignored;
    return !StartsWith(path, mRunFolder) &&
           (StartsWith(path, system.parent_path()) || std::filesystem::exists(system / path.filename(), ignored));
}

}  // namespace simhost
