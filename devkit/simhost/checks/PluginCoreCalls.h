// The calls that reached the double of the PluginCore or of the messaging library: read from that library's
// record, compared with what a scenario expects, shown.
#pragma once

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace simhost {

struct PluginCoreCall {
    std::string entry;
    nlohmann::ordered_json arguments;
    std::int32_t answer = 0;
    // What came back besides the answer, as far as it is known: "text" (and "text_hex" as for an argument), "size",
    // "flag", "port", "value".
    nlohmann::ordered_json results = nlohmann::ordered_json::object();
    // Of what left the entry instead of an answer, in words; nothing when it returned.
    std::optional<std::string> exception{};
    // How long the entry took; nothing when nobody measured.
    std::optional<double> milliseconds{};
};

// Reads on where it stopped the last time.
class CallLog {
  public:
    explicit CallLog(std::filesystem::path file) : mFile(std::move(file)) {}
    std::vector<PluginCoreCall> TakeNew();

  private:
    std::filesystem::path mFile;
    std::size_t mRead = 0;
};

// In words what differs; empty when the calls are exactly the expected ones. `expected` is the array of a step.
std::string DifferenceOf(const nlohmann::ordered_json& expected, const std::vector<PluginCoreCall>& calls);

// The same for many ticks, of which each brings about `each`. At most 1 + seconds/10 ticks begin with the question
// whether the PluginCore is enabled.
std::string DifferenceOfTicks(const nlohmann::ordered_json& each, std::int64_t ticks,
                              const std::vector<PluginCoreCall>& calls, std::int64_t seconds);

// One line for the entry, its numbers and its answer, and one for each text.
std::vector<std::string> LinesOf(const PluginCoreCall& call);

}  // namespace simhost
