#include "frame/PluginMain.h"

#include <cstring>

#include "frame/Dispatch.h"
#include "support/Log.h"

extern "C" std::int32_t PluginMain(const char* caller, const char* selector, SPMessageData* message) {
    // A plain comparison: the basic suite is not known yet. Ticks are never logged, they would flood the log.
    const bool isLogged = caller != nullptr && std::strcmp(caller, kCallerAITimer) != 0;
    if (isLogged) {
        LogMessage(kLogEntry, "Entering PluginMain('%s', '%s', ...)", caller, selector);
    }
    const std::int32_t result = DispatchGuarded(caller, selector, message);
    if (isLogged) {
        LogMessage(kLogExit, "PluginMain('%s', '%s', ...) returning %d", caller, selector, result);
    }
    return result;
}
