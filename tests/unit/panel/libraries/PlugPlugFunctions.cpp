// The five functions of PlugPlug, except the one that the build leaves out.
#include "unit/panel/libraries/SeenCalls.h"

#define EXPORTED extern "C" __declspec(dllexport)

namespace {
SeenCalls sSeen{};
}  // namespace

// The host's header gives the types of these functions the names that they are exported by.
namespace exported {

EXPORTED const SeenCalls* WhatWasSeen() { return &sSeen; }

#ifndef WITHOUT_PlugPlugLoadExtension
EXPORTED std::int32_t PlugPlugLoadExtension(const char* /*extensionID*/) { return 0; }
#endif

#ifndef WITHOUT_PlugPlugUnloadExtension
EXPORTED std::int32_t PlugPlugUnloadExtension(const char* /*extensionID*/) { return 0; }
#endif

#ifndef WITHOUT_PlugPlugAddEventListener
EXPORTED std::int32_t PlugPlugAddEventListener(const char* type, PlugPlugListener listener, void* context) {
    sSeen.type = type;
    sSeen.listener = listener;
    sSeen.context = context;
    return kAnswerToAdding;
}
#endif

#ifndef WITHOUT_PlugPlugRemoveEventListener
EXPORTED std::int32_t PlugPlugRemoveEventListener(const char* /*type*/, PlugPlugListener /*listener*/,
                                                  void* /*context*/) {
    return 0;
}
#endif

#ifndef WITHOUT_PlugPlugDispatchEvent
EXPORTED std::int32_t PlugPlugDispatchEvent(const PlugPlugEvent* event) {
    sSeen.event = event;
    return kAnswerToDispatching;
}
#endif

}  // namespace exported
