#include "frame/IdleTimer.h"

#include "support/ResultCodes.h"

std::int32_t AddTimers(SPInterfaceMessage* /*message*/) { return kNoErr; }

std::int32_t RemoveTimers() { return kNoErr; }

std::int32_t HandleIdleTick() { return kNoErr; }
