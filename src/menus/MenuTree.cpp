#include "menus/MenuTree.h"

#include "support/ResultCodes.h"

std::int32_t AddAllQuorvelMenuItems(SPInterfaceMessage* /*message*/) { return kNoErr; }

std::int32_t GoMenuItem(AIMenuMessage* /*message*/) { return kNoErr; }

std::int32_t updateMenuItem(AIMenuMessage* /*message*/) { return kNoErr; }
