#include "simhost/contract/Clauses.h"

#include <algorithm>
#include <iterator>

namespace simhost::contract {

namespace {

using enum ClauseId;
using enum Level;

constexpr Clause kClauses[] = {
    {kBufferBehind, "buffer-behind", kContract, "Nothing behind a buffer, size, flag or number is touched.",
     "They lie on the plug-in's stack: what is written behind them destroys other variables or the return address, and "
     "the host crashes later and elsewhere.",
     "Write at most `*size` bytes, the zero included. A flag is one byte: a Windows BOOL there writes three too many."},
    {kBufferInFront, "buffer-in-front", kContract, "Nothing in front of a buffer, size, flag or number is touched.",
     "They lie on the plug-in's stack among its other variables.",
     "Look for an index below zero, for example a search backwards for a separator in an empty text."},
    {kBufferTerminated, "buffer-terminated", kContract, "A reply ends with a zero within the buffer's capacity.",
     "A caller reads up to the zero. The plug-in keeps one byte more than it tells, so it reads on no further; other "
     "front ends need not.",
     "Cut a text to `*size - 1` bytes and write the zero; strncpy writes none when it cuts."},
    {kBufferUtf8, "reply-utf-8", kContract, "A reply is UTF-8.",
     "The plug-in gives up a menu refresh and takes all settings for 0 when the bytes are not UTF-8; an identifier "
     "comes back as other characters.",
     "Convert with WideCharToMultiByte(CP_UTF8, ...), and cut between characters, not within one."},
    {kBufferRest, "buffer-rest", kPedantic, "Behind the zero of a reply the buffer stays as it was.",
     "Nobody reads it there; but what was written came from somewhere, and may be somebody's password.",
     "Write the text and its zero, no more: mind memcpy of a whole structure or array."},
    {kSizeSane, "size-sane", kContract,
     "`*size` stays the capacity, or becomes the length of the text, with or without its zero.",
     "The plug-in passes the same variable on to the next entry as the capacity of the same buffer (open reply, "
     "resolve dialog, activation): a size that has grown makes that entry write behind the buffer, and with any other "
     "one nobody knows what it says.",
     "Leave `*size` alone; when a text does not fit, cut it or answer an error."},
    {kNullBuffer, "null-buffer", kContract, "HandleOpenExistingDocument accepts a null buffer with a size of 0.",
     "Front ends that take no reply call it so. The plug-in for this host does not, so only this check finds it.",
     "Test the pointer before you write; activate the fonts all the same, and answer 0."},
    {kArgumentBehind, "argument-behind", kContract, "Nothing outside of an argument's text is read or written.",
     "The text ends with its zero; behind it may be the end of the readable memory.",
     "Copy strlen(text) + 1 bytes and no fixed amount."},
    {kArgumentWritten, "argument-written", kContract, "Texts that are passed in are only read.",
     "They are the plug-in's own: the next entry and the plug-in's registry get what was written.",
     "Copy the text before you take it apart: strtok and PathRemoveFileSpec write into their argument."},
    {kArgumentKept, "argument-kept", kContract, "No argument is used after the entry has returned.",
     "Texts and buffers lie on the plug-in's stack or in strings that are gone: a pointer that was kept shows garbage, "
     "or destroys what lies there then.",
     "Copy what you keep, also for work that you hand to another thread."},
    {kArgumentFreed, "argument-freed", kContract, "No argument is freed.",
     "The memory is the plug-in's and was taken by another allocator, or lies on the stack: the heap breaks.",
     "Free only what the library itself has taken."},
    {kStateWritten, "messaging-state", kContract, "The messaging state that RegisterPlugPlug receives is not changed.",
     "The plug-in calls the messaging library through the same structure.", "Keep the pointer, or copy the fields."},
    {kFlagValue, "flag-value", kRobust, "A flag is written as 0 or 1.",
     "The plug-in takes any other value for 1; other front ends compare with 1.", "Write `enabled ? 1 : 0`."},
    {kException, "exception", kContract, "No exception leaves an entry.",
     "The plug-in stops C++ exceptions of Visual C++ and of its own compiler and gives up the message; the fonts of "
     "that document are not reported. Any other exception ends the host.",
     "Catch everything at the border of each entry and answer an error."},
    {kCallbackContext, "callback-context", kContract, "The menu callback gets the context of the call.",
     "It leads to the host's menus: the plug-in refuses null, and crashes with any other pointer.",
     "Pass the third argument of CreateMenusFromJSONBuffer on as it is."},
    {kCallbackText, "callback-text", kContract, "The menu callback gets an id and a label, all texts in UTF-8.",
     "The plug-in refuses an item without id or label; its children have no place then.",
     "Pass empty texts instead of null. `itemText` and `parentID` alone may be null."},
    {kCallbackFlag, "callback-flag", kPedantic, "The menu callback gets flags of 0 or 1.",
     "`checked` and `enabled` count only once the menu opens; the plug-in takes any other `hasSubMenu` for 1.",
     "Pass `checked ? 1 : 0`."},
    {kCallbackParent, "callback-parent", kContract, "A parent is passed before its children, with hasSubMenu set.",
     "`parentID` is the parent's label, and the name of its sub-menu, which the host does not have yet: the items "
     "appear nowhere.",
     "Go through the description from the top, each item before its children."},
    {kCallbackDuplicate, "callback-duplicate", kRobust,
     "Each id is passed once, and so is the label of each sub-menu and of each item at the top level but separators.",
     "A chosen item is told by its id alone, and the marks of both are those of the first one. A label names the "
     "sub-menu, and is the key by which other items at the top level are refused.",
     "Give each item, separators included, an id of its own, and a label of its own where it opens a sub-menu or is an "
     "item at the top level that shows a text."},
    {kCallbackThread, "callback-thread", kContract, "The menu callback is called on the thread of the entry.",
     "The host's menus belong to its main thread.", "Call back within the entry."},
    {kCallbackLate, "callback-late", kContract, "The menu callback is not called after the entry has returned.",
     "Its context is a variable of the plug-in that is gone.", "Keep neither the callback nor its context."},
    {kMenuJson, "menu-json", kContract, "What GetMenus writes is JSON, whatever it answers.",
     "The plug-in leaves the marks of the menu as they are when it cannot read the text; at start-up it passes the "
     "text on without a look at the answer.",
     "Write with a JSON library, and mind the 4096 bytes: a text that was cut is no JSON any more."},
    {kMenuMembers, "menu-members", kContract,
     "GetMenus gives an item or an array of items; each has id, title, enabled, checked and child.",
     "The plug-in gives up the refresh of all marks at the first item that lacks a member.",
     "Write all five members in every item, also where they are empty."},
    {kMenuKinds, "menu-kinds", kRobust,
     "In each item of GetMenus id is a text, title a text or null, enabled and checked are true or false, child is an "
     "array or null.",
     "The plug-in passes over an item whose texts are of another kind, and gives up at such a flag.",
     "Write true and false without quotes; a separator has an empty title, an item without children an empty array."},
    {kSettingsJson, "settings-json", kContract, "The reply of GetSettings is JSON.",
     "All settings are 0 for the plug-in when it cannot read the text.", "Write with a JSON library."},
    {kSettingsMembers, "settings-members", kContract,
     "The settings are an object; DialogSuppression and PickBestMatch are whole numbers.",
     "A member of another kind is 0 for the plug-in: true is not 1.", "Write numbers, not texts or true and false."},
    {kVersion, "version", kContract, "GetAPIVersion answers 0 for the plug-in's interface version.",
     "Without it the plug-in does not use the library, and says nothing.", "Answer 0 for interface version 1."},
    {kAfterTerminate, "after-terminate", kContract,
     "GetAPIVersion, GetSettings and GetSocketPort answer the same after TerminatePluginCoreInterface as before.",
     "The plug-in asks for version and settings right after it, and for the port as long as the panel lives.",
     "Keep what they need until the process ends."},
    {kSecondStart, "second-start", kRobust,
     "InitializePluginCoreInterface works again after TerminatePluginCoreInterface, and the answers are the same.",
     "A host that closes and starts its plug-ins again does so in one process.",
     "Reset everything in one place, and do not rely on variables being as they were loaded."},
    {kHookLeft, "hook-left", kContract, "No Windows hook is left after TerminatePluginCoreInterface.",
     "It runs for each message of the host, when nobody expects the font manager any more.", "UnhookWindowsHookEx."},
    {kWindowLeft, "window-left", kContract, "No window is left after TerminatePluginCoreInterface.",
     "It receives messages while the host takes itself down.", "DestroyWindow."},
    {kThreadLeft, "thread-left", kRobust, "No thread is left after TerminatePluginCoreInterface.",
     "It runs while the host takes itself down, and the process ends in the middle of what it does.",
     "Tell it to end, and wait for it."},
    {kProcessLeft, "process-left", kRobust, "No process that the library started is left.",
     "It keeps files of the host open, and the installer from replacing the library.",
     "End it, or start it by the font manager's application."},
    {kMemoryGrows, "memory-grows", kRobust, "The same calls again take no more memory.",
     "The idle entries are called up to 60 times a second for days.",
     "Give back what a call takes; bound every cache."},
    {kHandlesGrow, "handles-grow", kRobust, "The same calls again leave no more handles, windows or drawing objects.",
     "A process may have some ten thousand of them; then the host cannot open files or draw any more.",
     "CloseHandle, DestroyWindow and DeleteObject what a call makes."},
    {kEntriesMissing, "entries-missing", kContract, "All 24 entries are exported.",
     "The plug-in uses a library that accepts its version all the same: a missing entry does nothing.",
     "Export every entry, those that do nothing too; `PLUGINCORE_EXPORTS` or a module definition file does it."},
    {kDialog, "dialog", kRobust,
     "Only the entries that are there for it show a dialog, or any window for longer than 0.3 seconds.",
     "The host waits in the middle of what it does: it opens a document, or is idle.",
     "Show dialogs in InvokeResolveDialog, InvokeRestrictedFontsDialog and InvokeCommandDialog, or in a process of "
     "your own."},
    {kCurrentFolder, "current-folder", kRobust, "The process's current folder stays as it was.",
     "The host finds files of relative names there, and Windows cannot remove the folder.",
     "Use absolute paths; pass OFN_NOCHANGEDIR to the common dialogs."},
    {kFloatingPoint, "floating-point", kRobust, "Rounding and exception masks of the processor stay as they were.",
     "The host computes its drawing with them: lines move, or it crashes at a division.",
     "Put MXCSR back; a library that you load may have changed it."},
    {kErrorMode, "error-mode", kPedantic, "The process's error mode stays as it was.",
     "It decides for the whole host whether Windows shows boxes for missing disks and libraries.",
     "Use SetThreadErrorMode, and put it back."},
    {kCrash, "crash", kContract, "No entry crashes.", "The host crashes with it.",
     "See the place in the code that was named."},
    {kHang, "hang", kContract, "Every entry returns.",
     "The host's main thread waits: nothing reacts any more. A dialog that nobody answers is a hang as well.",
     "Show dialogs only where an entry is there for it, and wait for nothing without a limit."},
    {kEnded, "process-ended", kContract, "No entry ends the process.", "The host is gone, with all open documents.",
     "Call neither exit nor ExitProcess nor abort; answer an error."},
    {kSlow, "slow", kHint, "An entry returns within 100 ms, IdleEvent and ProcessPanelMessages within 10 ms.",
     "They run on the host's main thread.", "Move the work to a thread of the library."},
};

constexpr Level kLevels[] = {kContract, kRobust, kPedantic};

}  // namespace

std::span<const Clause> AllClauses() { return kClauses; }

const Clause& ClauseOf(ClauseId id) {
    return *std::find_if(std::begin(kClauses), std::end(kClauses),
                         [&](const Clause& clause) { return clause.id == id; });
}

const Clause* FindClause(std::string_view name) {
    const auto* const found = std::find_if(std::begin(kClauses), std::end(kClauses),
                                           [&](const Clause& clause) { return name == clause.name; });
    return found == std::end(kClauses) ? nullptr : found;
}

const char* NameOf(Level level) {
    constexpr const char* kNames[] = {"contract", "robust", "pedantic", "hint"};
    return kNames[static_cast<std::size_t>(level)];
}

const Level* FindLevel(std::string_view name) {
    const auto* const found =
        std::find_if(std::begin(kLevels), std::end(kLevels), [&](Level level) { return name == NameOf(level); });
    return found == std::end(kLevels) ? nullptr : found;
}

}  // namespace simhost::contract
