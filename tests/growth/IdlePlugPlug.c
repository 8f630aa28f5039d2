/* A messaging library that does nothing and keeps nothing: what grows is the plug-in's. */

/* Each takes at most three arguments and answers 0. */
#define ENTRY(name)                             \
    __declspec(dllexport) int PlugPlug##name(void); \
    int PlugPlug##name(void) { return 0; }

ENTRY(LoadExtension)
ENTRY(UnloadExtension)
ENTRY(AddEventListener)
ENTRY(RemoveEventListener)
ENTRY(DispatchEvent)
