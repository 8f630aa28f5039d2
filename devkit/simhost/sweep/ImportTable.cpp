#include "simhost/sweep/ImportTable.h"

#define PSAPI_VERSION 2
#include <psapi.h>
#include <tlhelp32.h>

#include <io.h>
#include <malloc.h>
#include <shlobj.h>
#include <sys/stat.h>

#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "doubles/common/CompilerSupport.h"
#include "simhost/sweep/MemoryImports.h"
#include "simhost/sweep/Substitute.h"

// The attributes of declarations tell the compiler what arguments mean, and nothing about the call.
QUORVEL_TYPES_LEAVE_ATTRIBUTES_BEHIND

namespace simhost::sweep {

namespace {

// A call with any number of arguments is passed on by its sister that takes a list.
int SubstituteOfSnprintf(char* buffer, std::size_t size, std::size_t count, const char* format, ...) {
    if (TheInjector().Fails(Kind::kImport, "_snprintf_s")) {
        errno = EINVAL;
        return -1;
    }
    va_list arguments;
    va_start(arguments, format);
    const int length = _vsnprintf_s(buffer, size, count, format, arguments);
    va_end(arguments);
    return length;
}

void SubstituteSnprintf(HMODULE module) { ReplaceImport(module, "_snprintf_s", AsReplacement(&SubstituteOfSnprintf)); }

constexpr std::intptr_t kInvalidHandle = -1;
constexpr std::intptr_t kEndOfFile = -1;  // EOF

// These have several declarations.
using MultiByteToWide = errno_t(std::size_t*, wchar_t*, std::size_t, const char*, std::size_t);
using PrintToBuffer = int(char*, std::size_t, std::size_t, const char*, va_list);

// Fails with a result and the last error of Windows, or with errno.
#define WINDOWS(name, failure, error, effect) \
    { #name, nullptr, &Substitute < #name, decltype(::name), failure, error, Effect::effect> ::Install }
#define RUNTIME(name, failure, number, effect) \
    { #name, nullptr, &Substitute < #name, decltype(::name), failure, -(number), Effect::effect> ::Install }
#define RUNTIME_AS(name, type, failure, number) \
    { #name, nullptr, &Substitute < #name, type, failure, -(number), Effect::kNothing> ::Install }
#define NEVER(name, why) \
    { name, why, nullptr }

constexpr const char* kNoResult = "has no way to tell a failure";
constexpr const char* kOwnValue = "reads a value of the thread or the process";
constexpr const char* kPureText = "reads memory that the caller gives, and nothing else";
constexpr const char* kUnwinding = "part of the exceptions themselves";
constexpr const char* kStartUp = "called by the C runtime's start-up alone, which ends the process when it fails";
constexpr const char* kEnds = "ends the process";
constexpr const char* kOfOtherThreads = "for variables of threads besides the main one, which never run the plug-in";
constexpr const char* kOldLock = "raises an exception of Windows in old releases only, and is documented not to fail";

constexpr ImportRow kTable[] = {
    // Files and handles.
    WINDOWS(CreateFileW, kInvalidHandle, ERROR_ACCESS_DENIED, kTakes),
    WINDOWS(CloseHandle, 0, ERROR_INVALID_HANDLE, kGivesBack),
    WINDOWS(FindFirstFileW, kInvalidHandle, ERROR_FILE_NOT_FOUND, kTakes),
    WINDOWS(GetFileTime, 0, ERROR_ACCESS_DENIED, kNothing),
    RUNTIME(_stat64, -1, ENOENT, kNothing),
    RUNTIME(_fstat64, -1, EBADF, kNothing),
    RUNTIME(fopen, 0, EMFILE, kTakes),
    RUNTIME(_wfopen, 0, EMFILE, kTakes),
    RUNTIME(_fdopen, 0, EMFILE, kTakes),
    RUNTIME(fread, 0, EIO, kNothing),
    NEVER("ferror", kPureText),
    RUNTIME(fclose, kEndOfFile, ENOSPC, kGivesBackAlways),
    RUNTIME(_close, -1, EBADF, kNothing),
    RUNTIME(fflush, kEndOfFile, ENOSPC, kNothing),
    RUNTIME(fputc, kEndOfFile, ENOSPC, kNothing),
    RUNTIME(fputs, kEndOfFile, ENOSPC, kNothing),
    RUNTIME(fwrite, 0, ENOSPC, kNothing),
    RUNTIME(setvbuf, -1, ENOMEM, kNothing),
    RUNTIME(_read, -1, EIO, kNothing),
    RUNTIME(_write, -1, ENOSPC, kNothing),
    RUNTIME(_lseeki64, -1, EINVAL, kNothing),
    RUNTIME(_fileno, -1, EBADF, kNothing),
    WINDOWS(SHGetSpecialFolderPathW, 0, ERROR_PATH_NOT_FOUND, kNothing),
    // Libraries.
    WINDOWS(LoadLibraryA, 0, ERROR_MOD_NOT_FOUND, kTakes),
    WINDOWS(LoadLibraryW, 0, ERROR_MOD_NOT_FOUND, kTakes),
    WINDOWS(FreeLibrary, 0, ERROR_INVALID_HANDLE, kGivesBack),
    WINDOWS(GetProcAddress, 0, ERROR_PROC_NOT_FOUND, kNothing),
    WINDOWS(GetModuleFileNameW, 0, ERROR_INVALID_HANDLE, kNothing),
    WINDOWS(GetModuleHandleW, 0, ERROR_MOD_NOT_FOUND, kNothing),
    WINDOWS(GetModuleHandleExW, 0, ERROR_MOD_NOT_FOUND, kTakesReference),
    // Processes.
    WINDOWS(OpenProcess, 0, ERROR_ACCESS_DENIED, kTakes),
    WINDOWS(K32EnumProcesses, 0, ERROR_ACCESS_DENIED, kNothing),
    WINDOWS(CreateToolhelp32Snapshot, kInvalidHandle, ERROR_BAD_LENGTH, kTakes),
    WINDOWS(Process32First, 0, ERROR_NO_MORE_FILES, kNothing),
    WINDOWS(Process32Next, 0, ERROR_NO_MORE_FILES, kNothing),
    WINDOWS(K32EnumProcessModules, 0, ERROR_PARTIAL_COPY, kNothing),
    WINDOWS(K32GetModuleBaseNameA, 0, ERROR_INVALID_HANDLE, kNothing),
    WINDOWS(K32GetModuleFileNameExA, 0, ERROR_INVALID_HANDLE, kNothing),
    // Version resources.
    WINDOWS(GetFileVersionInfoA, 0, ERROR_RESOURCE_DATA_NOT_FOUND, kNothing),
    WINDOWS(GetFileVersionInfoW, 0, ERROR_RESOURCE_DATA_NOT_FOUND, kNothing),
    WINDOWS(GetFileVersionInfoSizeA, 0, ERROR_RESOURCE_DATA_NOT_FOUND, kNothing),
    WINDOWS(GetFileVersionInfoSizeW, 0, ERROR_RESOURCE_DATA_NOT_FOUND, kNothing),
    WINDOWS(VerQueryValueW, 0, ERROR_RESOURCE_TYPE_NOT_FOUND, kNothing),
    // Windows and hooks.
    WINDOWS(EnumWindows, 0, ERROR_ACCESS_DENIED, kNothing),
    WINDOWS(EnumChildWindows, 0, ERROR_INVALID_WINDOW_HANDLE, kNothing),
    WINDOWS(GetDlgItem, 0, ERROR_CONTROL_ID_NOT_FOUND, kNothing),
    WINDOWS(GetForegroundWindow, 0, ERROR_SUCCESS, kNothing),
    WINDOWS(GetParent, 0, ERROR_INVALID_WINDOW_HANDLE, kNothing),
    WINDOWS(GetWindowTextA, 0, ERROR_INVALID_WINDOW_HANDLE, kNothing),
    WINDOWS(GetWindowTextLengthA, 0, ERROR_INVALID_WINDOW_HANDLE, kNothing),
    WINDOWS(MessageBoxA, 0, ERROR_NOT_ENOUGH_MEMORY, kNothing),
    WINDOWS(MessageBoxW, 0, ERROR_NOT_ENOUGH_MEMORY, kNothing),
    WINDOWS(PostMessageW, 0, ERROR_NOT_ENOUGH_QUOTA, kNothing),
    WINDOWS(SetForegroundWindow, 0, ERROR_ACCESS_DENIED, kNothing),
    WINDOWS(SetWindowsHookExW, 0, ERROR_NOT_ENOUGH_MEMORY, kTakes),
    WINDOWS(UnhookWindowsHookEx, 0, ERROR_INVALID_HOOK_HANDLE, kGivesBack),
    NEVER("CallNextHookEx", "its result is the next hook's"),
    NEVER("GetDesktopWindow", "there is always one"),
    // Text and time.
    WINDOWS(MultiByteToWideChar, 0, ERROR_NO_UNICODE_TRANSLATION, kNothing),
    WINDOWS(WideCharToMultiByte, 0, ERROR_NO_UNICODE_TRANSLATION, kNothing),
    WINDOWS(FormatMessageA, 0, ERROR_MR_MID_NOT_FOUND, kNothing),
    RUNTIME_AS(mbstowcs_s, MultiByteToWide, EILSEQ, EILSEQ),
    RUNTIME_AS(_vsnprintf_s, PrintToBuffer, -1, EINVAL),
    {"_snprintf_s", nullptr, &SubstituteSnprintf},
    RUNTIME(vfprintf, -1, ENOSPC, kNothing),
    NEVER("GetSystemTimeAsFileTime", kNoResult),
    NEVER("QueryPerformanceCounter", "Windows 10 always has one; it only adds to the stack guard"),
    RUNTIME(setlocale, 0, EINVAL, kNothing),
    RUNTIME(strftime, 0, EINVAL, kNothing),
    RUNTIME(wcsftime, 0, EINVAL, kNothing),
    // Memory. malloc and its sisters are a kind of their own.
    RUNTIME(_heapchk, _HEAPBADNODE, EINVAL, kNothing),
    WINDOWS(HeapValidate, 0, ERROR_INVALID_PARAMETER, kNothing),
    WINDOWS(LocalFree, 0, ERROR_SUCCESS, kNothing),
    {"malloc", nullptr, &SubstituteMalloc},
    {"calloc", nullptr, &SubstituteCalloc},
    {"realloc", nullptr, &SubstituteRealloc},
    {"free", kNoResult, &SubstituteFree},
    NEVER("GetProcessHeap", "there is always one"),
    NEVER("HeapAlloc", kOfOtherThreads),
    NEVER("HeapFree", kOfOtherThreads),
    // Threads of the C++ runtime.
    WINDOWS(CreateSemaphoreW, 0, ERROR_NOT_ENOUGH_MEMORY, kTakes),
    WINDOWS(ReleaseSemaphore, 0, ERROR_TOO_MANY_POSTS, kNothing),
    NEVER("WaitForSingleObject", "waits for a semaphore of the runtime's own, without a time limit"),
    WINDOWS(TlsAlloc, TLS_OUT_OF_INDEXES, ERROR_NO_MORE_ITEMS, kNothing),
    WINDOWS(TlsSetValue, 0, ERROR_NOT_ENOUGH_MEMORY, kNothing),
    NEVER("TlsGetValue", "reads a value of the thread; the number is the runtime's own"),
    NEVER("TlsFree", "gives a number of the runtime's own back"),
    NEVER("InitializeCriticalSection", kOldLock),
    NEVER("EnterCriticalSection", kOldLock),
    NEVER("LeaveCriticalSection", kNoResult),
    NEVER("DeleteCriticalSection", kNoResult),
    NEVER("Sleep", kNoResult),
    NEVER("GetCurrentProcessId", kOwnValue),
    NEVER("GetCurrentThreadId", kOwnValue),
    NEVER("GetLastError", kOwnValue),
    NEVER("SetLastError", kNoResult),
    // Exceptions.
    NEVER("RaiseException", kUnwinding),
    NEVER("RtlCaptureContext", kUnwinding),
    NEVER("RtlLookupFunctionEntry", kUnwinding),
    NEVER("RtlUnwindEx", kUnwinding),
    NEVER("RtlVirtualUnwind", kUnwinding),
    NEVER("__C_specific_handler", kUnwinding),
    // The C runtime.
    NEVER("VirtualProtect", kStartUp),
    NEVER("VirtualQuery", kStartUp),
    NEVER("_initterm", kStartUp),
    NEVER("_lock", kNoResult),
    NEVER("_unlock", kNoResult),
    NEVER("abort", kEnds),
    NEVER("_assert", kEnds),
    NEVER("_amsg_exit", kEnds),
    NEVER("__iob_func", kOwnValue),
    NEVER("_errno", kOwnValue),
    NEVER("___lc_codepage_func", kOwnValue),
    NEVER("___mb_cur_max_func", kOwnValue),
    NEVER("localeconv", kOwnValue),
    NEVER("IsDBCSLeadByteEx", kPureText),
    NEVER("iswctype", kPureText),
    NEVER("towlower", kPureText),
    NEVER("towupper", kPureText),
    NEVER("strerror", "has a text for every number"),
    NEVER("_stricmp", kPureText),
    NEVER("memchr", kPureText),
    NEVER("memcmp", kPureText),
    NEVER("memcpy", kPureText),
    NEVER("memmove", kPureText),
    NEVER("memset", kPureText),
    NEVER("strcmp", kPureText),
    NEVER("strcoll", kPureText),
    NEVER("strlen", kPureText),
    NEVER("strncmp", kPureText),
    NEVER("strxfrm", kPureText),
    NEVER("wcscoll", kPureText),
    NEVER("wcslen", kPureText),
    NEVER("wcsxfrm", kPureText),
};

#undef WINDOWS
#undef RUNTIME
#undef RUNTIME_AS
#undef NEVER

}  // namespace

std::span<const ImportRow> ImportTable() { return kTable; }

void SubstituteImports(HMODULE module) {
    for (const ImportRow& row : kTable) {
        if (row.substitute != nullptr) {
            row.substitute(module);
        }
    }
}

void RemoveHooksLeft() {
    for (void* const hook : TheHoldings().GivenBy("SetWindowsHookExW")) {
        UnhookWindowsHookEx(static_cast<HHOOK>(hook));
    }
}

void CloseHandlesLeft() {
    for (const char* const giver : {"CreateFileW", "OpenProcess", "CreateSemaphoreW", "CreateToolhelp32Snapshot"}) {
        for (const HANDLE handle : TheHoldings().GivenBy(giver)) {
            CloseHandle(handle);
        }
    }
    for (const HANDLE search : TheHoldings().GivenBy("FindFirstFileW")) {
        FindClose(search);
    }
    for (const char* const giver : {"fopen", "_wfopen"}) {
        for (void* const file : TheHoldings().GivenBy(giver)) {
            std::fclose(static_cast<std::FILE*>(file));
        }
    }
}

}  // namespace simhost::sweep
