#include "doubles/host/Host.h"

namespace simhost {

SimulatedHost& Host() {
    static auto* const sHost = new SimulatedHost;
    return *sHost;
}

}  // namespace simhost
