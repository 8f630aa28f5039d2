#include "simhost/verbs/TimerVerbs.h"

#include <map>
#include <string>

#include "doubles/host/Host.h"
#include "simhost/plugin/PluginClock.h"
#include "simhost/run/Performance.h"

namespace simhost {

namespace {

// How often each answer came.
std::map<std::int32_t, std::int64_t> SendTicks(MessageDriver& driver, std::int64_t times) {
    std::map<std::int32_t, std::int64_t> answers;
    for (std::int64_t i = 0; i < times; ++i) {
        for (void* const timer : Host().model.ActiveTimers()) {
            ++answers[driver.SendTick(timer)];
        }
    }
    return answers;
}

}  // namespace

Tick ReadTick(ObjectReader& reader) {
    const std::int64_t times = reader.Number("times", 1, ranges::kCount);
    return {times, reader.Number("sent", times, ranges::kCount)};
}

void Perform(const Tick& action, Performance& performance) {
    std::int64_t sent = 0;
    for (const auto& [answer, count] : SendTicks(performance.driver, action.times)) {
        performance.NoteAnswer("\"AI Timer\"/\"AI Go\"" + (count == 1 ? "" : " " + std::to_string(count) + " times"),
                               answer);
        sent += count;
    }
    performance.Observed("sent", sent);
    if (sent != action.sent) {
        performance.Broken(Rule::kTicks,
                           std::to_string(sent) + " ticks were sent, expected " + std::to_string(action.sent));
    }
}

void Perform(const Wait& action, Performance&) { LetTimePass(action.seconds); }

}  // namespace simhost
