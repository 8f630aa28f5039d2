// A library that is called without the plug-in, through the layer.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "plugincore/EntryPoint.h"
#include "plugincore/PluginCore.h"

namespace simhost::contract {

// A zeroed reply buffer of any size.
struct Reply {
    explicit Reply(std::size_t capacity) : bytes(capacity + 1), size(capacity) {}
    char* Buffer() { return bytes.data(); }
    std::string Text() const { return bytes.data(); }

    std::vector<char> bytes;  // one more than the library is told of
    std::uint64_t size;
};

// A missing entry answers "not found". Calls throw what the entries throw.
class ProbedLibrary {
  public:
    // Loads the file, together with what lies in its folder. Throws std::runtime_error in words.
    explicit ProbedLibrary(const std::filesystem::path& file);

    // As the plug-in starts it and ends it.
    void Start() const;
    void End() const { TerminatePluginCoreInterface(); }

    HMODULE Module() const { return mModule; }
    // The library's own entry, without the layer; null when it has none.
    template <class Function>
    Function* Real(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(mModule, name)));
    }
    const std::vector<std::string>& Missing() const { return mMissing; }

// A name to be declared takes no parentheses. NOLINTNEXTLINE(bugprone-macro-parentheses)
#define DECLARE_ENTRY(name) EntryPoint<decltype(::name)> name;
    PLUGINCORE_ENTRIES(DECLARE_ENTRY)
#undef DECLARE_ENTRY

  private:
    HMODULE mModule;
    std::vector<std::string> mMissing;
};

}  // namespace simhost::contract
