// window: a person operates the host, until the window is closed.
#pragma once

namespace simhost {

class Performance;

struct OperateByHand {};
void Perform(const OperateByHand& action, Performance& performance);

}  // namespace simhost
