// Thread: any.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "plugincore/PluginCore.h"

// A zeroed buffer of `Capacity` bytes for a text that the PluginCore writes, with the 64-bit size that goes with it.
template <std::size_t Capacity>
class ReplyBuffer {
  public:
    char* Data() noexcept { return mBytes.data(); }
    std::uint64_t* Size() noexcept { return &mSize; }

    // The text up to its first zero byte. Always ends: one byte more than the PluginCore is told of stays zero.
    // Lifetime: of the buffer.
    std::string_view Text() const noexcept { return {mBytes.data(), std::strlen(mBytes.data())}; }

    // Fills a fresh buffer with as much of the text as fits.
    void Assign(std::string_view text) noexcept {
        std::memcpy(mBytes.data(), text.data(), std::min(text.size(), Capacity));
    }

  private:
    std::array<char, Capacity + 1> mBytes{};
    std::uint64_t mSize = Capacity;
};

constexpr std::size_t kOpenReplySize = kPluginCoreOpenReplySize;
constexpr std::size_t kSettingsSize = kPluginCoreSettingsSize;
constexpr std::size_t kNewDocumentReplySize = kPluginCoreNewDocumentSize;
constexpr std::size_t kCommandDialogReplySize = kPluginCoreCommandDialogSize;
constexpr std::size_t kMenusSize = kPluginCoreMenusSize;
constexpr std::size_t kDocumentIDSize = kPluginCoreDocumentIDSize;
