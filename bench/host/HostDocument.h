// What the counting host answers about its current document: fixed data, prepared before anything is measured. Handles
// and references of the plug-in's view are the addresses of these objects.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "host/HostTypes.h"

namespace bench {

struct HostFont {
    std::string name;
};

struct HostRun {
    HostFont* font;
};

struct HostFrame {
    std::vector<HostRun> runs;
};

// The host's scripts have codes from -2 to 85.
constexpr std::int32_t kFirstScript = -2;
constexpr std::size_t kScriptCount = 88;

// Not copied: its parts point at each other.
struct HostDocument {
    HostDocument() = default;
    HostDocument(const HostDocument&) = delete;
    HostDocument& operator=(const HostDocument&) = delete;

    std::u16string path;
    std::vector<HostFont> fonts;
    std::vector<HostFrame> frames;
    std::vector<std::u16string> placedFiles;
    // Null for a script without a default font.
    std::array<HostFont*, kScriptCount> defaultFonts{};
};

}  // namespace bench
