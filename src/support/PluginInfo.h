// What the plug-in knows about itself: its module, its file, its identity text and fields of its version resource.
// Process-wide, zero at load.
// Thread: main.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string>

// The plug-in's identifier. Writable; handed to PluginInfo::GetPluginPath, which does not read it.
extern const char* sPluginIdentifier;

constexpr std::size_t kPluginIdentityTextSize = 64;

// The module that contains this code, whatever its file is called; null when Windows cannot tell, and then asked again
// by the next call. The module's reference count is raised once, so that the handle stays good.
HMODULE GetPluginModuleHandle();

// Reads a field of the plug-in's own version resource. Arguments and results as for the overload that takes a path
// (VersionResource.h).
std::int32_t StringValueFromVersionResource(const std::string& fieldName, char* destination,
                                            std::size_t destinationSize);

namespace CrossPluginUtils {

// The field's text as UTF-8, at most 1023 bytes; empty when it is not found.
std::string StringValueFromVersionResource(const std::string& fieldName);

}  // namespace CrossPluginUtils

namespace PluginInfo {

// Marks the plug-in as functional and empties everything else. The second form keeps `identityText` too, up to 64
// bytes: a text of 64 bytes or more is not terminated.
void Initialize();
void Initialize(const char* identityText);

// Stores a module handle instead of looking it up. No reference is taken: a front end that also uses the panel must
// keep the module in memory.
void SetPluginModuleHandle(HMODULE module);

void SetPluginIsFunctional(bool isFunctional);
bool PluginIsFunctional();

// The identity text; always terminated.
std::string GetIdentityText();

// The full path of the plug-in's file as UTF-8, or the text "./QuorvelTypeAgent..." when it cannot be read.
std::string GetPluginPath(const char* pluginIdentifier);

// "InternalName" of the plug-in's version resource, at most 64 bytes, read until it has been found once.
std::string GetInternalName();

// "FileVersion" of the plug-in's version resource, read on every call.
std::string GetFileVersion();

}  // namespace PluginInfo
