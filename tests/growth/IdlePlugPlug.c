/* A messaging library that keeps no more than one listener: what grows is the plug-in's. The
   export list gives each function its public name, which is the name of its type. */
#include "plugincore/PluginCore.h"

#include <stddef.h>

static PlugPlugListener sListener;
static void* sContext;

int32_t LoadExtensionEntry(const char* extensionID) {
    (void)extensionID;
    return 0;
}

int32_t UnloadExtensionEntry(const char* extensionID) {
    (void)extensionID;
    return 0;
}

int32_t AddEventListenerEntry(const char* type, PlugPlugListener listener, void* context) {
    (void)type;
    sListener = listener;
    sContext = context;
    return 0;
}

int32_t RemoveEventListenerEntry(const char* type, PlugPlugListener listener, void* context) {
    (void)type;
    (void)listener;
    (void)context;
    sListener = NULL;
    return 0;
}

int32_t DispatchEventEntry(const PlugPlugEvent* event) {
    (void)event;
    return 0;
}

/* Of this library alone: the panel's request, once. 0 when nobody listens. */
int32_t AskForPort(void) {
    static const PlugPlugEvent kRequest = {"com.quorvel.portnumberrequest", kPlugPlugApplicationScope, "panel", NULL, ""};
    if (sListener == NULL) {
        return 0;
    }
    sListener(&kRequest, sContext);
    return 1;
}
