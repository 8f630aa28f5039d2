#include "simhost/verbs/WindowVerb.h"

#include "simhost/run/FlightRecorder.h"
#include "simhost/by_hand/WindowSession.h"

namespace simhost {

void Perform(const OperateByHand&, Performance& performance) {
    RecordOperationByHand();
    WindowSession(performance).Run();
}

}  // namespace simhost
