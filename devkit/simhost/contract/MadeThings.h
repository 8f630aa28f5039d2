// What a library has made and must take away again: hooks, windows, threads, processes.
//
// Thread: NoteX and ForgetHook: any. Leftovers: main.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "simhost/contract/Clauses.h"

namespace simhost::contract {

// On the thread that has made it. `type`: nothing for a hook for events of windows. `watchedThread`: the one whose
// messages or events it is for; 0 for all.
void NoteHook(HANDLE hook, std::optional<int> type, DWORD watchedThread);
void ForgetHook(HANDLE hook);
void NoteWindow(HWND window);
// Both handles stay the library's, which may close them. `start`: where the thread begins.
void NoteThread(HANDLE thread, const void* start);
void NoteProcess(HANDLE process, const std::string& commandLine);

struct Leftover {
    ClauseId clause;
    std::string what;
};

// What is still there, and windows that belong to the library whoever made them. Threads and processes that are just
// ending get a moment to do so, all of them together the same one.
std::vector<Leftover> Leftovers(HMODULE library);

}  // namespace simhost::contract
