// Twenty entries are missing, the one that tells whether the library is compatible among them.
#include "Entry.h"

EXPORT_ENTRY(GetMenus)
EXPORT_ENTRY(HandleSaveDocument)
EXPORT_ENTRY(IdleEvent)
EXPORT_ENTRY(PluginIsEnabled)
