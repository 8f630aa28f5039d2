#include "frame/LifeCycle.h"
#include "frame/NotifierHandlers.h"
#include "support/ResultCodes.h"

std::int32_t HandleStartupNotifier(AINotifierMessage* message) {
    return WithNotifierLogged("HandleStartupNotifier", message, [] { return kNoErr; });
}

std::int32_t HandleShutdownNotifier(AINotifierMessage* message) {
    return WithNotifierLogged("HandleShutdownNotifier", message, [&] {
        ShutdownPlugin(&message->d);
        return kNoErr;
    });
}

std::int32_t HandleFontListChangedNotifier(AINotifierMessage* message) {
    return WithNotifierLogged("HandleFontListChangedNotifier", message, [] { return kNoErr; });
}
