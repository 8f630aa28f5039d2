// The plug-in's own result codes: 32-bit, 0 is success. Host errors pass through unchanged beside them.
#pragma once

#include <cstdint>

constexpr std::int32_t kNoErr = 0;

// Something looked for was not found.
constexpr std::int32_t kLookupNotFound = 0x15000000;
// A scan of the document yielded nothing usable; the same number as kLookupNotFound.
constexpr std::int32_t kFontScanFailed = 0x15000000;
// The PluginCore's answer for a document that uses restricted fonts.
constexpr std::int32_t kRestrictedFonts = 0x12000000;
// A menu description whose root is neither an item nor an array of items.
constexpr std::int32_t kRootNotObject = 0x4000000;
// A top-level menu item that is there already.
constexpr std::int32_t kDuplicateMenuItem = 0x9000000;
