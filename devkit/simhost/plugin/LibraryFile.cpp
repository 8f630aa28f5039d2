#include "simhost/plugin/LibraryFile.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>

#include "doubles/common/Text.h"
#include "simhost/plugin/LibraryImage.h"

namespace simhost {

namespace {

struct Beginning {
    std::string_view bytes;
    const char* means;
};

constexpr Beginning kBeginnings[] = {
    {"\x7F"
     "ELF",
     "is a program or library for Linux"},
    {"\xCF\xFA\xED\xFE", "is a program or library for macOS"},
    {"\xCA\xFE\xBA\xBE", "is a program or library for macOS"},
    {"PK\x03\x04", "is a ZIP archive"},
    {"%PDF", "is a PDF document"},
    {"!<arch>", "is a library for a linker, not one to load"},
};

struct MachineName {
    std::uint16_t machine;
    const char* name;
};

constexpr MachineName kMachines[] = {
    {IMAGE_FILE_MACHINE_I386, "is a 32-bit file"},
    {IMAGE_FILE_MACHINE_ARM64, "is a 64-bit file for ARM"},
    {IMAGE_FILE_MACHINE_ARMNT, "is a 32-bit file for ARM"},
};

bool IsText(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xEF\xBB\xBF")) {
        return true;
    }
    return std::all_of(bytes.begin(), bytes.end(), [](char c) {
        return static_cast<unsigned char>(c) >= 0x20 || c == '\t' || c == '\r' || c == '\n' || c == '\f';
    });
}

std::string WhatItIs(const std::string& bytes) {
    for (const Beginning& beginning : kBeginnings) {
        if (bytes.starts_with(beginning.bytes)) {
            return beginning.means;
        }
    }
    if (bytes.starts_with("MZ")) {
        return "is cut short, or a program for DOS";
    }
    return IsText(std::string_view(bytes).substr(0, 4096)) ? "is a text" : "is neither program nor library";
}

std::string WrongMachine(std::uint16_t machine) {
    if (machine == IMAGE_FILE_MACHINE_AMD64) {
        return {};
    }
    for (const MachineName& row : kMachines) {
        if (row.machine == machine) {
            return std::string(row.name) + "; a 64-bit file for x86 is needed";
        }
    }
    return "is for another kind of processor (" + std::to_string(machine) + ")";
}

// Where Windows looks for a library that another one needs, in `folder` first if one is named; nothing when it is not
// there.
std::optional<std::filesystem::path> FindLibrary(const std::string& name, const std::filesystem::path& folder) {
    std::error_code ignored;
    if (!folder.empty() && std::filesystem::is_regular_file(folder / Wide(name), ignored)) {
        return folder / Wide(name);
    }
    const HMODULE library = LoadLibraryExW(Wide(name).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (library == nullptr) {
        return std::nullopt;
    }
    FreeLibrary(library);
    wchar_t path[MAX_PATH] = L"";
    const DWORD length = SearchPathW(nullptr, Wide(name).c_str(), nullptr, MAX_PATH, path, nullptr);
    // Some names stand for libraries of other names, which are Windows' own.
    return length == 0 || length >= MAX_PATH ? std::filesystem::path() : std::filesystem::path(path);
}

// What Windows brings along is whole.
bool IsOfSystem(const std::filesystem::path& file) {
    wchar_t folder[MAX_PATH] = L"";
    GetSystemDirectoryW(folder, MAX_PATH);
    std::error_code ignored;
    return std::filesystem::equivalent(file.parent_path(), folder, ignored);
}

// As in "needs one.dll, which needs other.dll, which is not found"; empty when nothing is missing. `seen`: those that
// were looked at, which may need each other.
std::string MissingLibrary(const LibraryImage& image, const std::filesystem::path& folder,
                           std::set<std::string>& seen) {
    for (const ImportedLibrary& import : image.Imports()) {
        if (!seen.insert(import.name).second) {
            continue;
        }
        const auto file = FindLibrary(import.name, folder);
        if (!file) {
            return "needs " + import.name + ", which is not found";
        }
        const bool isWhole = file->empty() || IsOfSystem(*file);
        const std::string missing = isWhole ? "" : MissingLibrary(LibraryImage(*file), folder, seen);
        if (!missing.empty()) {
            return "needs " + import.name + ", which " + missing;
        }
    }
    return {};
}

std::string MissingLibrary(const LibraryImage& image, const std::filesystem::path& folder) {
    std::set<std::string> seen;
    const std::string missing = MissingLibrary(image, folder, seen);
    return missing.empty() ? "needs a library that is not found, or one that it needs does" : missing;
}

std::string MissingFunction(const LibraryImage& image, const std::filesystem::path& folder) {
    for (const ImportedLibrary& import : image.Imports()) {
        const auto file = FindLibrary(import.name, folder);
        const std::wstring name = file && !file->empty() ? file->wstring() : Wide(import.name);
        const HMODULE library = LoadLibraryExW(name.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
        if (library == nullptr) {
            continue;
        }
        for (const std::string& function : import.functions) {
            if (GetProcAddress(library, function.c_str()) == nullptr) {
                FreeLibrary(library);
                return "needs the function " + function + " of " + import.name + ", which does not have it";
            }
        }
        FreeLibrary(library);
    }
    return "needs a function that a library does not have";
}

}  // namespace

std::string WhyNoLibrary(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error)) {
        return "does not exist";
    }
    if (!std::filesystem::is_regular_file(file, error)) {
        return "is no file";
    }
    if (std::filesystem::file_size(file, error) == 0) {
        return "is empty";
    }
    const LibraryImage image(file);
    if (image.Bytes().empty()) {
        return "cannot be read";
    }
    if (!image.IsPortableExecutable()) {
        return WhatItIs(image.Bytes());
    }
    if (std::string wrong = WrongMachine(image.Machine()); !wrong.empty()) {
        return wrong;
    }
    if (!image.IsLibrary()) {
        return "is a program and not a library";
    }
    return image.IsCutShort() ? "is cut short" : "";
}

std::string WhyNotLoaded(const std::filesystem::path& file, DWORD error, const std::filesystem::path& folder) {
    switch (error) {
        case ERROR_MOD_NOT_FOUND:
            return MissingLibrary(LibraryImage(file), folder);
        case ERROR_PROC_NOT_FOUND:
            return MissingFunction(LibraryImage(file), folder);
        case ERROR_DLL_INIT_FAILED:
            return "refused to be loaded: its DllMain answered FALSE";
        default:
            return "cannot be loaded (error " + std::to_string(error) + ")";
    }
}

}  // namespace simhost
