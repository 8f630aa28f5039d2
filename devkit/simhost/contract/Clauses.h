// What a PluginCore promises, clause by clause. The promises themselves stand in plugincore/PluginCore.h.
//
// Thread: any.
#pragma once

#include <span>
#include <string_view>

namespace simhost::contract {

// kContract: the host or the plug-in may fail when it is broken. kRobust: goes wrong only later, or with other hosts.
// kPedantic: costs or confuses somebody. kHint: worth knowing, never a verdict. Each level contains those before it.
enum class Level { kContract, kRobust, kPedantic, kHint };

enum class ClauseId {
    kBufferBehind,
    kBufferInFront,
    kBufferTerminated,
    kBufferUtf8,
    kBufferRest,
    kSizeSane,
    kNullBuffer,
    kArgumentBehind,
    kArgumentWritten,
    kArgumentKept,
    kArgumentFreed,
    kStateWritten,
    kFlagValue,
    kException,
    kCallbackContext,
    kCallbackText,
    kCallbackFlag,
    kCallbackParent,
    kCallbackDuplicate,
    kCallbackThread,
    kCallbackLate,
    kMenuJson,
    kMenuMembers,
    kMenuKinds,
    kSettingsJson,
    kSettingsMembers,
    kVersion,
    kAfterTerminate,
    kSecondStart,
    kHookLeft,
    kWindowLeft,
    kThreadLeft,
    kProcessLeft,
    kMemoryGrows,
    kHandlesGrow,
    kEntriesMissing,
    kDialog,
    kCurrentFolder,
    kFloatingPoint,
    kErrorMode,
    kCrash,
    kHang,
    kEnded,
    kSlow,
};

struct Clause {
    ClauseId id;
    const char* name;  // as people write it
    Level level;
    const char* what;    // what holds
    const char* reason;  // why, and what the plug-in does with it
    const char* cure;
};

std::span<const Clause> AllClauses();
const Clause& ClauseOf(ClauseId id);
// Null when there is none of that name.
const Clause* FindClause(std::string_view name);

const char* NameOf(Level level);
// Null for no level. "hint" is none to choose.
const Level* FindLevel(std::string_view name);

}  // namespace simhost::contract
