// The scalar types and opaque references of the host's binary interface (64-bit Windows).
#pragma once

#include <cstdint>

using SPErr = std::int32_t;   // 0 is success
using AIErr = std::int32_t;   // 0 is success
using ATEErr = std::int32_t;  // 0 is success

using SPBoolean = std::int32_t;
using AIBoolean = std::int32_t;
using AIBool8 = std::uint8_t;
using ATEBool8 = std::uint8_t;

using HostUtf16Unit = std::uint16_t;

// Opaque to the plug-in: only ever compared, logged and handed back.
using SPPluginRef = struct SPPlugin*;
using AIArtHandle = struct AIArt*;
using AIDocumentHandle = struct AIDocument*;
using AIMenuItemHandle = struct AIMenuItem*;
using AIMenuGroupHandle = struct AIMenuGroup*;
using AINotifierHandle = struct AINotifier*;
using AITimerHandle = struct AITimer*;
using AIFileFormatHandle = struct AIFileFormat*;
using AIFontKey = struct AIFont*;
using AIMdMemoryHandle = struct AIMdMemory*;

namespace ATE {
using TextRangeRef = struct TextRange*;
using TextRunsIteratorRef = struct TextRunsIterator*;
using CharFeaturesRef = struct CharFeatures*;
using FontRef = struct Font*;
}  // namespace ATE

// The value of a four-character code: its first character is the most significant byte.
constexpr std::uint32_t FourCharCode(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i) {
        code = (code << 8) | static_cast<unsigned char>(text[i]);
    }
    return code;
}

// What an operation answers that was handed a null message.
constexpr std::int32_t kBadParameterErr = static_cast<std::int32_t>(FourCharCode("PARM"));
