#include "simhost/verbs/RandomMessagesVerb.h"

#include <string>
#include <utility>

#include "simhost/checks/ImportWatch.h"
#include "simhost/contract/RecordedCalls.h"
#include "simhost/random/RandomMessages.h"
#include "simhost/run/Performance.h"

namespace simhost {

namespace {

LeastCounts ReadLeastCounts(ObjectReader& reader, std::int64_t times) {
    // Without being asked for: a run that sends none is no run.
    LeastCounts least = {{"messages", times}};
    for (const auto& [kind, count] : reader.Object("at_least").items()) {
        const Place place = reader.PlaceOf("at_least").Member(kind);
        CheckKnown(kind, "kind of random message", MessageKindNames(), place);
        least[kind] = NumberOf(count, place, ranges::kCount);
    }
    return least;
}

}  // namespace

SendRandomMessages ReadRandomMessages(ObjectReader& reader) {
    const std::int64_t times = reader.NeedNumber("times", ranges::kCount);
    const auto seed = static_cast<std::uint64_t>(reader.Number("seed", 1, ranges::kSize));
    LeastCounts least = ReadLeastCounts(reader, times);
    return {times, seed, std::move(least), reader.Flag("missing_to_the_end", false)};
}

void Perform(const SendRandomMessages& action, Performance& performance) {
    performance.Tell(std::to_string(action.times) + " messages from the seed " + std::to_string(action.seed));
    performance.Observed("seed", action.seed);
    MessageCounts counts;
    {
        RandomMessages messages(action.seed, action.missesToTheEnd, performance);
        for (std::int64_t i = 0; i < action.times; ++i) {
            messages.SendOne();
            // Nobody compares them.
            contract::TakeCalls();
            TakeMessagingLoads();
            performance.panel.TakeEvents();
        }
        counts = messages.Counts();
    }
    for (const std::string& line : counts.Lines()) {
        performance.Tell(line);
    }
    performance.Observed("at_least", counts.AsJson());
    for (const std::string& line : counts.Missing(action.atLeast)) {
        performance.Broken(Rule::kRandomMessages, line);
    }
}

}  // namespace simhost
