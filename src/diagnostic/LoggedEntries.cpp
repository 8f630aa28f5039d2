// The entries of the PluginCore with a line before and after each call. The line before is what a log ends with when
// the call never returns.
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "diagnostic/CallText.h"
#include "diagnostic/DiagnosticLog.h"
#include "diagnostic/RunHeader.h"
#include "diagnostic/TextWriter.h"
#include "plugincore/EntryInterposition.h"
#include "plugincore/PluginCore.h"
#include "support/ForeignExceptionGuard.h"
#include "support/Log.h"

namespace {

// Of three quoted texts, and their escaped control characters.
constexpr std::size_t kCallTextSize = 3072;
// A call of a tick that takes longer is worth a line, however often it comes.
constexpr std::uint64_t kSlowMicroseconds = 250'000;

constexpr const char* kByVisualCpp = "threw an exception of Visual C++ (0xE06D7363)";
constexpr const char* kByOwnCompiler = "threw an exception of the plug-in's own compiler";

class Stopwatch {
  public:
    std::uint64_t Microseconds() const {
        LARGE_INTEGER perSecond;
        QueryPerformanceFrequency(&perSecond);
        const auto ticks = static_cast<std::uint64_t>(Ticks() - mBegin);
        return ticks * 1'000'000 / static_cast<std::uint64_t>(perSecond.QuadPart);
    }

  private:
    static std::int64_t Ticks() {
        LARGE_INTEGER ticks;
        QueryPerformanceCounter(&ticks);
        return ticks.QuadPart;
    }

    std::int64_t mBegin = Ticks();
};

// A call that is under way. The PluginCore may let the host in again, and so be called while it is called.
// Thread: main, as all calls.
class OpenCall {
  public:
    // `line` is the line before the call.
    explicit OpenCall(std::string_view line) : mLine(line), mOuter(std::exchange(sInnermost, this)) {}
    OpenCall(const OpenCall&) = delete;
    OpenCall& operator=(const OpenCall&) = delete;
    ~OpenCall() { sInnermost = mOuter; }

    // The line before the call that this one was made within; empty when there is none.
    std::string_view Outer() const { return mOuter == nullptr ? std::string_view() : mOuter->mLine; }

  private:
    std::string_view mLine;
    const OpenCall* mOuter;

    static inline const OpenCall* sInnermost = nullptr;
};

enum class Entry {
#define QUORVEL_NUMBER_ENTRY(name) k##name,
    PLUGINCORE_ENTRIES(QUORVEL_NUMBER_ENTRY)
#undef QUORVEL_NUMBER_ENTRY
};

constexpr const char* kNames[] = {
#define QUORVEL_NAME_ENTRY(name) #name,
    PLUGINCORE_ENTRIES(QUORVEL_NAME_ENTRY)
#undef QUORVEL_NAME_ENTRY
};

// How a call has ended.
struct CallEnd {
    const char* name;
    std::uint64_t microseconds;
    const char* how;  // its answer, or what it threw
};

// `state` stands behind the name, `rest` at the end of the line.
void LogEnd(std::int32_t level, const CallEnd& end, const char* state = "", const char* rest = "") {
    LogMessage(level, "<- %s%s took %u.%03u ms, %s%s", end.name, state, static_cast<unsigned>(end.microseconds / 1000),
               static_cast<unsigned>(end.microseconds % 1000), end.how, rest);
}

// Of a call that was taken for a repetition, so that it has no line of its own yet. `outer` is the call that is under
// way again: the line that counts has named this one in its place.
void LogEndOfRepetition(RepetitionEnd kind, const TextWriter& call, const CallEnd& end, std::string_view outer) {
    char memory[kCallTextSize];
    TextWriter rest(memory);
    if (!outer.empty()) {
        rest.Append("; now in ");
        rest.Append(WithoutArrow(outer));
    }
    if (kind == RepetitionEnd::kBehindOthers) {
        // Its line before the call would stand below what happened within the call.
        LogEnd(kLogNote, end, " (begun above)", rest.Terminated());
        return;
    }
    LogMessage(kLogEntry, "%s", call.Terminated());
    LogEnd(kLogExit, end, "", rest.Terminated());
}

template <Entry kEntry, class Signature>
class LoggedEntry;

template <Entry kEntry, class... Arguments>
class LoggedEntry<kEntry, std::int32_t(Arguments...)> {
  public:
    // What is called instead of the library's function; null when there is none.
    static FARPROC Replace(FARPROC address) noexcept {
        sFunction = reinterpret_cast<Function>(reinterpret_cast<void*>(address));
        return address == nullptr ? nullptr : reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&Call));
    }

  private:
    using Function = std::int32_t (*)(Arguments...);
    static constexpr const char* kName = kNames[static_cast<std::size_t>(kEntry)];

    // Its entry line is logged from here and not from a function of its own: what the PluginCore calls back logs from
    // further down the stack, and is seen to be within the call.
    static std::int32_t Call(Arguments... arguments) {
        char callMemory[kCallTextSize];
        TextWriter call(callMemory);
        AppendCall(call, kName, arguments...);
        const Repetition repetition = TheDiagnosticLog().BeginRepetition(call.Text());
        if (!repetition) {
            LogMessage(kLogEntry, "%s", call.Terminated());
        }
        const OpenCall open(call.Text());
        const Stopwatch watch;
        std::int32_t result = 0;
        try {
            result = CallForeignCode([&] { return sFunction(arguments...); });
        } catch (const ForeignException&) {
            LogThrown(watch.Microseconds(), repetition, call, open.Outer(), kByVisualCpp);
            throw;
        } catch (...) {
            LogThrown(watch.Microseconds(), repetition, call, open.Outer(), kByOwnCompiler);
            throw;
        }
        LogAnswer(watch.Microseconds(), repetition, call, open.Outer(), result, arguments...);
        return result;
    }

    static void LogAnswer(std::uint64_t microseconds, const Repetition& repetition, const TextWriter& call,
                          std::string_view outer, std::int32_t result, Arguments... arguments) {
        char memory[kCallTextSize];
        TextWriter answer(memory);
        answer.Append("answered ");
        AppendAnswer(answer, result, arguments...);
        const CallEnd end = {kName, microseconds, answer.Terminated()};
        if (repetition) {
            const RepetitionEnd kind = microseconds >= kSlowMicroseconds
                                           ? TheDiagnosticLog().BreakRepetition(repetition)
                                           : TheDiagnosticLog().EndRepetition(repetition, answer.Text(), outer);
            if (kind == RepetitionEnd::kAsBefore) {
                return;
            }
            LogEndOfRepetition(kind, call, end, outer);
        } else {
            LogEnd(kLogExit, end);
        }
        TheDiagnosticLog().RememberCall(call.Text(), answer.Text());
    }

    static void LogThrown(std::uint64_t microseconds, const Repetition& repetition, const TextWriter& call,
                          std::string_view outer, const char* thrown) {
        const CallEnd end = {kName, microseconds, thrown};
        if (repetition) {
            LogEndOfRepetition(TheDiagnosticLog().BreakRepetition(repetition), call, end, outer);
        } else {
            LogEnd(kLogExit, end);
        }
    }

    // What the library gave; as long as the binding.
    static inline Function sFunction = nullptr;
};

// The library that the last entry was bound to, so that each is told of once.
HMODULE sLibrary = nullptr;

void LogLibraryOnce(HMODULE library) {
    if (library == nullptr || library == sLibrary) {
        return;
    }
    sLibrary = library;
    char memory[kCallTextSize];
    TextWriter text(memory);
    AppendModule(text, library);
    LogMessage(kLogNote, "PluginCore: %s", text.Terminated());
    TheDiagnosticLog().RememberPluginCore(text.Text());
}

struct Replacement {
    const char* name;
    FARPROC (*replace)(FARPROC address) noexcept;
};

constexpr Replacement kReplacements[] = {
#define QUORVEL_REPLACE_ENTRY(name) {#name, &LoggedEntry<Entry::k##name, decltype(::name)>::Replace},
    PLUGINCORE_ENTRIES(QUORVEL_REPLACE_ENTRY)
#undef QUORVEL_REPLACE_ENTRY
};

}  // namespace

FARPROC InterposeEntry(HMODULE library, const char* name, FARPROC address) noexcept {
    LogLibraryOnce(library);
    for (const Replacement& each : kReplacements) {
        if (std::strcmp(each.name, name) == 0) {
            return each.replace(address);
        }
    }
    return address;
}
