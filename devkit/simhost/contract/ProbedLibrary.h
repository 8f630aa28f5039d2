// A library that is called without the plug-in, through the layer.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "plugincore/EntryPoint.h"
#include "plugincore/PluginCore.h"
#include "simhost/contract/ContractBook.h"

namespace simhost::contract {

// A zeroed reply buffer of any size.
struct Reply {
    explicit Reply(std::size_t capacity) : bytes(capacity + 1), size(capacity) {}
    char* Buffer() { return bytes.data(); }
    std::string Text() const { return bytes.data(); }

    std::vector<char> bytes;  // one more than the library is told of
    std::uint64_t size;
};

// Thrown instead of a call for which there is no time left.
struct OutOfTime {};

// Milliseconds of GetTickCount64, from which on no probe makes a call.
class Deadline {
  public:
    explicit Deadline(std::int64_t seconds) : mAt(GetTickCount64() + static_cast<ULONGLONG>(seconds) * 1000) {}
    bool IsOver() const { return GetTickCount64() >= mAt; }

  private:
    ULONGLONG mAt;
};

// An entry as the plug-in calls it, as long as there is time. Answers nothing when an exception has left the entry.
template <class Signature>
class ProbedEntry;

template <class... Arguments>
class ProbedEntry<std::int32_t(Arguments...)> {
  public:
    explicit ProbedEntry(const Deadline& deadline) : mDeadline(deadline) {}

    void Bind(FARPROC address) noexcept { mEntry.Bind(address); }
    bool IsNull() const noexcept { return mEntry.IsNull(); }
    std::optional<std::int32_t> operator()(Arguments... arguments) const {
        if (mDeadline.IsOver()) {
            throw OutOfTime();
        }
        try {
            return mEntry(arguments...);
        } catch (...) {
            // What left the entry is in the book; the probe goes on. Anything else is the layer's own.
            if (!Book().HasBroken(ClauseId::kException)) {
                throw;
            }
            return std::nullopt;
        }
    }

  private:
    const Deadline& mDeadline;
    EntryPoint<std::int32_t(Arguments...)> mEntry;
};

// A missing entry answers "not found". Calls throw OutOfTime.
class ProbedLibrary {
  public:
    // Loads the file, together with what lies in its folder. Throws std::runtime_error in words.
    ProbedLibrary(const std::filesystem::path& file, const Deadline& deadline);
    ProbedLibrary(const ProbedLibrary&) = delete;
    ProbedLibrary& operator=(const ProbedLibrary&) = delete;

    // As the plug-in starts it and ends it.
    void Start() const;
    void End() const { TerminatePluginCoreInterface(); }

    const Deadline& GetDeadline() const { return mDeadline; }
    // The library's own entry, without the layer; null when it has none.
    template <class Function>
    Function* Real(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(mModule, name)));
    }
    const std::vector<std::string>& Missing() const { return mMissing; }

  private:
    const Deadline mDeadline;

  public:
// A name to be declared takes no parentheses. NOLINTNEXTLINE(bugprone-macro-parentheses)
#define DECLARE_ENTRY(name) ProbedEntry<decltype(::name)> name{mDeadline};
    PLUGINCORE_ENTRIES(DECLARE_ENTRY)
#undef DECLARE_ENTRY

  private:
    HMODULE mModule;
    std::vector<std::string> mMissing;
};

}  // namespace simhost::contract
