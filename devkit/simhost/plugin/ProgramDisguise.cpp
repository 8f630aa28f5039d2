#include "simhost/plugin/ProgramDisguise.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "doubles/common/ImportPatch.h"

namespace simhost {

namespace {

// Set once: there is one plug-in per process.
std::filesystem::path sProgram;
HMODULE(WINAPI* sLoadLibrary)(LPCSTR name) = &LoadLibraryA;  // what the plug-in called before

bool IsOwnProgram(const std::filesystem::path& program) {
    wchar_t own[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    // Not whether it is the same file: the program in the folder of the run may be a link to this one.
    return CompareStringOrdinal(own, -1, program.c_str(), -1, TRUE) == CSTR_EQUAL;
}

DWORD WINAPI FileNameOfModule(HMODULE module, LPWSTR name, DWORD size) {
    if (module != nullptr) {
        return GetModuleFileNameW(module, name, size);
    }
    const std::wstring& program = sProgram.native();
    const auto length = static_cast<DWORD>(std::min<std::size_t>(program.size(), size == 0 ? 0 : size - 1));
    std::copy_n(program.begin(), length, name);
    if (size != 0) {
        name[length] = L'\0';
    }
    SetLastError(length == program.size() ? ERROR_SUCCESS : ERROR_INSUFFICIENT_BUFFER);
    return length == program.size() ? length : size;
}

// A bare name means the file beside the program, before anything else.
HMODULE WINAPI LoadLibraryOfName(LPCSTR name) {
    const std::filesystem::path file = std::filesystem::path(name);
    const std::filesystem::path beside = sProgram.parent_path() / file;
    std::error_code ignored;
    return !file.has_parent_path() && std::filesystem::exists(beside, ignored) ? LoadLibraryW(beside.c_str())
                                                                               : sLoadLibrary(name);
}

}  // namespace

void DisguiseAs(const std::filesystem::path& program, HMODULE plugin) {
    if (IsOwnProgram(program)) {
        return;
    }
    sProgram = program;
    SetDllDirectoryW(program.parent_path().c_str());
    ReplaceImport(plugin, "GetModuleFileNameW", AsReplacement(FileNameOfModule));
    if (void* const before = ImportedFunction(plugin, "LoadLibraryA")) {
        sLoadLibrary = reinterpret_cast<HMODULE(WINAPI*)(LPCSTR)>(before);
    }
    ReplaceImport(plugin, "LoadLibraryA", AsReplacement(LoadLibraryOfName));
}

}  // namespace simhost
