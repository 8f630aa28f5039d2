#include "simhost/verbs/WindowVerb.h"

#include "simhost/by_hand/WindowSession.h"
#include "simhost/run/FlightRecorder.h"

namespace simhost {

void Perform(const OperateByHand&, Performance& performance) {
    RecordOperationByHand();
    WindowSession(performance).Run();
}

}  // namespace simhost
