// The calls that reached the double of the PluginCore or of the messaging library, read from that library's record.
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
    // False when the process was lost within the entry.
    bool hasReturned = true;
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

}  // namespace simhost
