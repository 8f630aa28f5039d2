// Owners of the handles that CloseHandle closes. They differ in the value that stands for "none".
#pragma once

#include <windows.h>

#include "support/UniqueHandle.h"

// Of a process, a thread, an event.
struct KernelHandleTraits {
    using Handle = HANDLE;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle handle) noexcept { CloseHandle(handle); }
};
using KernelHandle = UniqueHandle<KernelHandleTraits>;

// Of a file, a snapshot of processes.
struct FileHandleTraits : KernelHandleTraits {
    static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
};
using FileHandle = UniqueHandle<FileHandleTraits>;
