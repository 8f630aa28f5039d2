/* A messaging library that does nothing. */
#include <stdint.h>

#define DO_NOTHING(name) \
    __declspec(dllexport) int32_t PlugPlug##name(void) { return 0; }

DO_NOTHING(LoadExtension)
DO_NOTHING(UnloadExtension)
DO_NOTHING(AddEventListener)
DO_NOTHING(RemoveEventListener)
DO_NOTHING(DispatchEvent)
