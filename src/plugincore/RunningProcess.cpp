#include "plugincore/RunningProcess.h"

#include <windows.h>
// After windows.h, which they need.
#include <psapi.h>
#include <tlhelp32.h>

#include <array>
#include <optional>
#include <set>

#include "support/KernelHandle.h"
#include "support/Log.h"
#include "support/ResultCodes.h"

namespace {

constexpr std::size_t kMaxProcesses = 1024;
constexpr DWORD kPathSize = MAX_PATH + 1;
// A path that fills the whole size comes without a terminator, for which one more character is kept.
using PathBuffer = std::array<char, kPathSize + 1>;

// The name of an executable, with and without its suffix.
class ExecutableName {
  public:
    explicit ExecutableName(const std::string& name)
        : mName(name), mNameWithExe(name.find('.') == std::string::npos ? name + ".exe" : name) {}

    bool Is(const char* baseName) const noexcept {
        return _stricmp(baseName, mName.c_str()) == 0 || _stricmp(baseName, mNameWithExe.c_str()) == 0;
    }

  private:
    std::string mName;
    std::string mNameWithExe;
};

// In ascending order, so that the lowest identifier wins; nothing when the list cannot be read.
std::optional<std::set<DWORD>> ListProcesses() {
    std::array<DWORD, kMaxProcesses> identifiers{};
    DWORD size = 0;
    if (K32EnumProcesses(identifiers.data(), static_cast<DWORD>(sizeof(identifiers)), &size) == 0) {
        return std::nullopt;
    }
    return std::set<DWORD>(identifiers.begin(), identifiers.begin() + size / sizeof(DWORD));
}

// Takes those off the list that Windows knows by another name: to open a process and to read its memory costs far more
// than one call that tells the names of all. Processes that it does not tell stay on the list.
void DropOthers(const ExecutableName& name, std::set<DWORD>& processes) {
    const FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32 process{};
    process.dwSize = sizeof(process);
    for (BOOL isThere = snapshot ? Process32First(snapshot.Get(), &process) : FALSE; isThere != FALSE;
         isThere = Process32Next(snapshot.Get(), &process)) {
        if (!name.Is(process.szExeFile)) {
            processes.erase(process.th32ProcessID);
        }
    }
}

// The module of the process's executable; null when Windows does not say.
HMODULE MainModule(HANDLE process) {
    HMODULE module = nullptr;
    DWORD needed = 0;
    return K32EnumProcessModules(process, &module, sizeof(module), &needed) != 0 ? module : nullptr;
}

bool HasBaseName(HANDLE process, HMODULE module, const ExecutableName& name) {
    PathBuffer baseName{};
    return K32GetModuleBaseNameA(process, module, baseName.data(), kPathSize) != 0 && name.Is(baseName.data());
}

std::int32_t ReadModuleFolder(HANDLE process, HMODULE module, std::string& outDirectory) {
    PathBuffer buffer{};
    if (K32GetModuleFileNameExA(process, module, buffer.data(), kPathSize) == 0) {
        return kLookupNotFound;
    }
    const std::string path = buffer.data();
    const std::size_t separator = path.rfind('\\');
    if (separator == std::string::npos) {
        return kLookupNotFound;
    }
    outDirectory = path.substr(0, separator + 1);
    return kNoErr;
}

std::int32_t SearchProcesses(const std::string& name, std::string& outDirectory) {
    std::optional<std::set<DWORD>> processes = ListProcesses();
    if (!processes) {
        return kLookupNotFound;
    }
    const ExecutableName executable(name);
    DropOthers(executable, *processes);
    for (const DWORD identifier : *processes) {
        KernelHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, identifier));
        if (!process) {
            continue;
        }
        const HMODULE module = MainModule(process.Get());
        if (module != nullptr && HasBaseName(process.Get(), module, executable)) {
            // The handle of the match stays open on purpose, and a match whose path cannot be read ends the search.
            return ReadModuleFolder(process.Release(), module, outDirectory);
        }
    }
    return kLookupNotFound;
}

}  // namespace

std::int32_t GetPathToRunningProcessExe(const std::string& name, std::string& outDirectory) {
    LogMessage(kLogEntry, "Entering GetPathToRunningProcessExe('%s', ...)", name.c_str());
    const std::int32_t result = SearchProcesses(name, outDirectory);
    LogMessage(kLogExit, "GetPathToRunningProcessExe('%s', '%s') returned %d", name.c_str(), outDirectory.c_str(),
               result);
    return result;
}
