// Messages about what the plug-in has registered: menu items, timers, file formats.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "simhost/run/MessageDriver.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

struct Reply {
    std::string message;  // for the transcript
    std::int32_t answer;
};

// Nothing when the host would not send the step's message; that is noted. Both throw HostLost.
std::optional<Reply> SendMenuMessage(MessageDriver& driver, const Step& step);
std::optional<Reply> SendFileCheck(MessageDriver& driver, const Step& step);

// Every active timer ticks as many times. Returns how often each answer came. Throws HostLost.
std::map<std::int32_t, std::int64_t> SendTicks(MessageDriver& driver, std::int64_t times);

}  // namespace simhost
