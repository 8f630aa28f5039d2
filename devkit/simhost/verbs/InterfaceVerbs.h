// startup, about, shutdown, unload, message: what the host sends of itself.
#pragma once

#include <string>

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

class Performance;

struct SendInterface {
    std::string selector;
};
void Perform(const SendInterface& action, Performance& performance);

// The file is freed unless the plug-in asks to stay.
struct UnloadPlugin {};
void Perform(const UnloadPlugin& action, Performance& performance);

// Any caller and selector.
struct SendPlain {
    std::string caller;
    std::string selector;
    bool withBasicSuite = true;
};
SendPlain ReadSendPlain(ObjectReader& reader);
void Perform(const SendPlain& action, Performance& performance);

}  // namespace simhost
