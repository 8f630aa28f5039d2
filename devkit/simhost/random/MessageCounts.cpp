#include "simhost/random/MessageCounts.h"

namespace simhost {

namespace {

struct KindRow {
    const char* name;
    const char* inWords;
};

// In the order of MessageKind.
constexpr KindRow kKinds[] = {
    {"messages", "messages, nested ones among them"},
    {"nested", "messages and requests of the panel that came while another one was under way"},
    {"nested_twice", "of these within one that was nested itself"},
    {"panel_requests", "requests of the panel"},
    {"null_messages", "messages that are null"},
    {"no_basic_suite", "messages without the basic suite"},
    {"unknown", "messages of unknown callers or with unknown selectors"},
    {"wrong_handles", "messages with wrong handles"},
    {"refused_suites", "suites that were refused"},
    {"missing_suites", "different suites among them"},
    {"partial_tables", "messages that found only a part of the suites that the plug-in holds"},
    {"recovered_tables", "messages that got the rest of them"},
    {"lost_tables", "shut-downs with a part of them"},
    {"left_strings", "strings that stayed behind without their suite"},
    {"left_at_shutdown", "timers and blocks that stayed behind without their suite"},
    {"failed_calls", "calls of the host that failed"},
    {"errors", "messages that were answered with an error"},
    {"moments", "operations and entries within which others came"},
};
static_assert(std::size(kKinds) == static_cast<std::size_t>(MessageKind::kCount));

}  // namespace

nlohmann::ordered_json MessageCounts::AsJson() const {
    nlohmann::ordered_json counts;
    for (std::size_t i = 0; i < mCounts.size(); ++i) {
        counts[kKinds[i].name] = mCounts[i];
    }
    return counts;
}

std::vector<std::string> MessageCounts::Lines() const {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < mCounts.size(); ++i) {
        lines.push_back(std::to_string(mCounts[i]) + " " + kKinds[i].inWords);
    }
    return lines;
}

std::vector<std::string> MessageCounts::Missing(const LeastCounts& least) const {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < mCounts.size(); ++i) {
        const auto found = least.find(kKinds[i].name);
        if (found != least.end() && mCounts[i] < found->second) {
            lines.push_back(found->first + ": " + std::to_string(mCounts[i]) + ", expected at least " +
                            std::to_string(found->second));
        }
    }
    return lines;
}

std::vector<std::string> MessageKindNames() {
    std::vector<std::string> names;
    for (const KindRow& row : kKinds) {
        names.emplace_back(row.name);
    }
    return names;
}

}  // namespace simhost
