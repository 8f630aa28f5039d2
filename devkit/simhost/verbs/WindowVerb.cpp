#include "simhost/verbs/WindowVerb.h"

#include "simhost/window/WindowSession.h"

namespace simhost {

void Perform(const OperateByHand&, Performance& performance) { WindowSession(performance).Run(); }

}  // namespace simhost
