/* The header as a library in C sees it: alone, twice, and with exports. What is asserted is what a C compiler can say. */
#define PLUGINCORE_EXPORTS
#include "plugincore/PluginCore.h"
#include "plugincore/PluginCore.h"

#include <stddef.h>

_Static_assert(sizeof(PlugPlugEvent) == 40, "an event of the messaging library");
_Static_assert(sizeof(PlugPlugState) == 48 && offsetof(PlugPlugState, dispatch) == 40, "the messaging state");
_Static_assert(kPluginCoreRestrictedFonts == 0x12000000 && kPluginCoreOpenReplySize == 32767, "numbers");

/* Each name of the list is declared, and is an entry. */
#define PLUGINCORE_ADDRESS(name) (void (*)(void)) & name,
typedef void (*AnyEntry)(void);
extern const AnyEntry kEntriesOfTheList[];
const AnyEntry kEntriesOfTheList[] = {PLUGINCORE_ENTRIES(PLUGINCORE_ADDRESS)};
_Static_assert(sizeof(kEntriesOfTheList) == 24 * sizeof(AnyEntry), "24 entries");
