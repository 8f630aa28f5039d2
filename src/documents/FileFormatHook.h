// The file format that the plug-in registers only to be told which file the host is about to open.
// Thread: main.
#pragma once

#include <cstdint>

#include "host/Messages.h"

// What the check answers: the host never picks this plug-in's format and goes on with its own reader.
constexpr std::int32_t kFormatRefused = -1;

// Registers the format, for reading, ahead of the host's own readers, and keeps its handle in the globals block. Always
// 0: without the format the plug-in only hears of a file when the host has opened it.
std::int32_t AddFileFormat(SPInterfaceMessage* message);

// Hands the path of the file that the host is about to open to the PluginCore and answers kFormatRefused, whatever the
// PluginCore says and whatever goes wrong. An empty path is not handed on. Throws nothing.
std::int32_t CheckFileFormat(const AIFileFormatMessage* message);
