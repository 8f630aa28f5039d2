// Calls of the PluginCore that are like earlier ones. The host's idle timer makes the same few up to 60 times a second;
// each in full would bury everything else. A call is a repetition when one with the same arguments has been logged
// since the last line that the plug-in itself has logged. Thread: main.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

class RepeatedCalls {
  public:
    // `call` is the line before a call: its name and arguments.
    bool IsRepetition(std::string_view call) const noexcept;
    // Whether it was answered like this then. `answer` is without what differs each time.
    bool WasAnswered(std::string_view call, std::string_view answer) const noexcept;
    // Takes the place of what was known of the same call.
    void Remember(std::string_view call, std::string_view answer) noexcept;
    void Forget() noexcept { mCount = 0; }

  private:
    struct Known {
        std::uint64_t call;
        std::uint64_t answer;
    };
    // More than a tick ever makes. Without room a call is not remembered, and logged in full.
    static constexpr std::size_t kKept = 16;

    const Known* Find(std::string_view call) const noexcept;

    std::array<Known, kKept> mKnown{};
    std::size_t mCount = 0;
};
