// The program and the libraries of the watched process: those that are loaded, and those that were.
// Thread: the one that handles the process's debug events.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace simhost {

struct Module {
    std::uint64_t base;
    std::uint64_t size;
    std::filesystem::path path;
    bool isSystem;  // comes with Windows
    bool isLoaded = true;

    std::string Name() const;
};

class Modules {
  public:
    // What lies in `runFolder` is not the system's, whatever its name.
    Modules(HANDLE process, std::filesystem::path runFolder);
    ~Modules();
    Modules(const Modules&) = delete;
    Modules& operator=(const Modules&) = delete;

    // The file stays the caller's; null when Windows gives none.
    void Loaded(HANDLE file, const void* base);
    void Unloaded(const void* base);

    // Null when the address lies in none. A module that is loaded there goes before one that was.
    const Module* At(std::uint64_t address) const;

  private:
    bool IsSystem(const std::filesystem::path& path) const;

    HANDLE mProcess;
    std::filesystem::path mRunFolder;
    std::vector<Module> mModules;
};

}  // namespace simhost
