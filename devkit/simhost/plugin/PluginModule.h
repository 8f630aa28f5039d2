// The plug-in's file in this process.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace simhost {

// Windows does not load the plug-in's file.
class LoadError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class PluginModule {
  public:
    // Reads the file's property list, loads the file and finds the entry point that the list names.
    // Throws LoadError and PropertyListError in words when that cannot be done.
    explicit PluginModule(const std::filesystem::path& file);
    PluginModule(const PluginModule&) = delete;
    PluginModule& operator=(const PluginModule&) = delete;

    std::int32_t Call(const char* caller, const char* selector, void* message) const;
    // Frees the library. Nothing may be called afterwards.
    void Unload();

    bool IsLoaded() const { return mModule != nullptr; }
    HMODULE Module() const { return mModule; }
    const std::string& EntryPoint() const { return mEntryName; }

  private:
    using Entry = std::int32_t (*)(const char* caller, const char* selector, void* message);

    std::string mEntryName;
    HMODULE mModule = nullptr;
    Entry mEntry = nullptr;
};

}  // namespace simhost
