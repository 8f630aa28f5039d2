// How many random messages of each kind were sent: what a run tells, and what a scenario can ask for.
//
// Thread: main.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace simhost {

// A message can be of several kinds.
enum class MessageKind {
    kMessage,
    kNested,
    kNestedTwice,
    kPanelRequest,
    kNullMessage,
    kNoBasicSuite,
    kUnknown,
    kWrongHandle,
    kRefusedSuite,
    kMissingSuite,
    kPartialTable,
    kRecoveredTable,
    kLostTable,
    kLeftString,
    kLeftAtShutdown,
    kFailedCall,
    kError,
    kMoment,
    kCount,
};

using LeastCounts = std::map<std::string, std::int64_t>;  // by name of the kind

class MessageCounts {
  public:
    void Add(MessageKind kind) { ++mCounts[static_cast<std::size_t>(kind)]; }

    // By name of the kind.
    nlohmann::ordered_json AsJson() const;
    // A line for each kind.
    std::vector<std::string> Lines() const;
    // A line for each kind of which there are fewer.
    std::vector<std::string> Missing(const LeastCounts& least) const;

  private:
    std::array<std::int64_t, static_cast<std::size_t>(MessageKind::kCount)> mCounts{};
};

std::vector<std::string> MessageKindNames();

}  // namespace simhost
