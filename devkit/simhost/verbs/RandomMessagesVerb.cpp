#include "simhost/verbs/RandomMessagesVerb.h"

#include <string>

#include "simhost/checks/ImportWatch.h"
#include "simhost/contract/RecordedCalls.h"
#include "simhost/run/Performance.h"
#include "simhost/run/RandomMessages.h"

namespace simhost {

SendRandomMessages ReadRandomMessages(ObjectReader& reader) {
    return {reader.NeedNumber("times", ranges::kCount),
            static_cast<std::uint64_t>(reader.Number("seed", 1, ranges::kSize))};
}

void Perform(const SendRandomMessages& action, Performance& performance) {
    performance.Tell(std::to_string(action.times) + " messages from the seed " + std::to_string(action.seed));
    RandomMessages messages(action.seed, performance);
    for (std::int64_t i = 0; i < action.times; ++i) {
        messages.SendOne();
        // Nobody compares them.
        contract::TakeCalls();
        TakeMessagingLoads();
    }
    const RandomMessages::Counts& counts = messages.Sent();
    performance.Tell(std::to_string(counts.nested) + " of them within another, " + std::to_string(counts.failures) +
                     " failures of the host scripted, " + std::to_string(counts.strange) +
                     " with what no host would send");
    performance.Observed("nested", counts.nested);
}

}  // namespace simhost
