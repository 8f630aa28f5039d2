// Names a place in code for people.
//
// Thread: any.
#pragma once

#include <windows.h>

#include <string>

namespace simhost::contract {

// As in "Function of PluginCoreX64.dll (File.c:12)", or "PluginCoreX64.dll + 0x1a2b" where no symbols are.
std::string DescribeCode(const void* address);

// The innermost place inside `library` on the stack of an exception, else where the exception happened: what a library
// writes is often written by a function of the C runtime that it calls. Takes no memory.
const void* PlaceWithin(HMODULE library, const CONTEXT& context);

// The file name of the module that holds the address; empty for none.
std::string FileNameOfModule(HMODULE module);

}  // namespace simhost::contract
