/* A PluginCore that does nothing but add menu items. What they are is said before the plug-in starts. */
#define PLUGINCORE_EXPORTS
#include "plugincore/PluginCore.h"

#include <stdio.h>
#include <string.h>

static char sMenus[kPluginCoreMenusSize] = "[]";
static int sItemCount = 1;
static int sAddedItems;

/* Of this library alone: the description that it gives from now on, and how many items "t1", "t2" and so on, with the
   identifiers "1", "2" and so on, it has. */
PLUGINCORE_API void DescribeMenus(const char* json, int itemCount) {
    strncpy(sMenus, json, sizeof sMenus - 1);
    sItemCount = itemCount;
}

/* Of this library alone: how many items it has added, ever. */
PLUGINCORE_API int AddedItems(void) { return sAddedItems; }

int32_t GetMenus(const char* path, char* buffer, uint64_t* size) {
    (void)path;
    const size_t length = strlen(sMenus);
    if (*size > length) {
        memcpy(buffer, sMenus, length + 1);
    }
    return kPluginCoreSuccess;
}

int32_t CreateMenusFromJSONBuffer(const char* json, PluginCoreMenuCallback callback, void* context) {
    (void)json;
    for (int i = 1; i <= sItemCount; ++i) {
        char id[16];
        char title[16];
        sprintf(id, "%d", i);
        sprintf(title, "t%d", i);
        callback(id, title, title, 0, 1, 0, NULL, context);
        ++sAddedItems;
    }
    return kPluginCoreSuccess;
}

int32_t GetAPIVersion(uint32_t* value, int32_t interfaceVersion) {
    (void)interfaceVersion;
    *value = kPluginCoreVersion;
    return kPluginCoreSuccess;
}

int32_t PluginIsEnabled(uint8_t query, uint8_t* isEnabled) {
    (void)query;
    *isEnabled = 1;
    return kPluginCoreSuccess;
}

int32_t ProcessPanelMessages(uint8_t process) {
    (void)process;
    return kPluginCoreSuccess;
}

int32_t IdleEvent(void) { return kPluginCoreSuccess; }
int32_t InitializePluginCoreInterface(const char* text) {
    (void)text;
    return kPluginCoreSuccess;
}
int32_t TerminatePluginCoreInterface(void) { return kPluginCoreSuccess; }

int32_t GetSettings(char* buffer, uint64_t* size) {
    static const char kSettings[] = "{\"DialogSuppression\":0,\"PickBestMatch\":0}";
    if (*size >= sizeof kSettings) {
        memcpy(buffer, kSettings, sizeof kSettings);
    }
    return kPluginCoreSuccess;
}

int32_t RegisterPlugPlug(PlugPlugState* state) {
    (void)state;
    return kPluginCoreSuccess;
}

int32_t GetSocketPort(uint32_t* port) {
    *port = 49152;
    return kPluginCoreSuccess;
}
