/* The entries of the faulty libraries. Without a fault they keep the contract. */
#define PLUGINCORE_EXPORTS
#include "Faults.h"

#include <string.h>

static int32_t Reply(const char* text, char* buffer, const uint64_t* size) {
    if (buffer != NULL && *size > strlen(text)) {
        memcpy(buffer, text, strlen(text) + 1);
    }
    return kPluginCoreSuccess;
}

static int32_t Conclude(const char* entry, Call call) {
    Commit(entry, &call);
    return call.answer;
}

int32_t GetAPIVersion(uint32_t* value, int32_t interfaceVersion) {
    (void)interfaceVersion;
    *value = kPluginCoreVersion;
    return Conclude("GetAPIVersion", (Call){0});
}

int32_t InitializePluginCoreInterface(const char* text) {
    return Conclude("InitializePluginCoreInterface", (Call){.path = text});
}

int32_t TerminatePluginCoreInterface(void) { return Conclude("TerminatePluginCoreInterface", (Call){0}); }

int32_t PluginIsEnabled(uint8_t query, uint8_t* isEnabled) {
    (void)query;
    *isEnabled = 1;
    return Conclude("PluginIsEnabled", (Call){.flag = isEnabled});
}

int32_t IdleEvent(void) { return Conclude("IdleEvent", (Call){0}); }

int32_t ProcessPanelMessages(uint8_t process) {
    (void)process;
    return Conclude("ProcessPanelMessages", (Call){0});
}

int32_t GetSettings(char* buffer, uint64_t* size) {
    Reply("{\"DialogSuppression\":0,\"PickBestMatch\":0}", buffer, size);
    return Conclude("GetSettings", (Call){.buffer = buffer, .size = size});
}

int32_t HandleOpenExistingDocument(const char* path, char* buffer, uint64_t* size) {
    return Conclude("HandleOpenExistingDocument", (Call){.path = path, .buffer = buffer, .size = size});
}

int32_t InvokeRestrictedFontsDialog(const char* path, char* buffer) {
    (void)buffer;
    return Conclude("InvokeRestrictedFontsDialog", (Call){.path = path});
}

int32_t InvokeResolveDialog(char* text, uint64_t* size) {
    return Conclude("InvokeResolveDialog", (Call){.buffer = text, .size = size});
}

int32_t ActivateChosenFonts(const char* path, char* text, uint64_t* size) {
    return Conclude("ActivateChosenFonts", (Call){.path = path, .buffer = text, .size = size});
}

int32_t HandleCreateNewDocument(char* buffer, uint64_t* size) {
    return Conclude("HandleCreateNewDocument", (Call){.buffer = buffer, .size = size});
}

int32_t HandleSaveDocument(const char* path, const char* report) {
    return Conclude("HandleSaveDocument", (Call){.path = path, .report = report});
}

int32_t HandleCloseDocument(const char* path, const char* report) {
    return Conclude("HandleCloseDocument", (Call){.path = path, .report = report});
}

int32_t GetIDForDocument(const char* path, char* buffer, uint64_t* size) {
    Reply("document-1", buffer, size);
    return Conclude("GetIDForDocument", (Call){.path = path, .buffer = buffer, .size = size});
}

int32_t UpdateDocumentFontUsage(const char* documentID, const char* report) {
    (void)documentID;
    return Conclude("UpdateDocumentFontUsage", (Call){.report = report});
}

#ifndef WITHOUT_UNCALLED_ENTRY
int32_t GetDocumentFontUsage(void) { return kPluginCoreSuccess; }
#endif

int32_t SetPathForDocument(void) { return kPluginCoreSuccess; }

int32_t GetMenus(const char* path, char* buffer, uint64_t* size) {
    Reply("[{\"id\":\"fonts\",\"title\":\"Fonts\",\"enabled\":true,\"checked\":false,\"child\":["
          "{\"id\":\"activate\",\"title\":\"Activate\",\"enabled\":true,\"checked\":true,\"child\":[]}]}]",
          buffer, size);
    return Conclude("GetMenus", (Call){.path = path, .buffer = buffer, .size = size});
}

int32_t CreateMenusFromJSONBuffer(const char* json, PluginCoreMenuCallback callback, void* context) {
    (void)json;
    if (!HasFault("ChildrenFirst")) {
        callback("fonts", "Fonts", "Fonts", 0, 1, 1, NULL, context);
        callback("activate", "Activate", "Activate", 1, 1, 0, "Fonts", context);
    }
    return Conclude("CreateMenusFromJSONBuffer", (Call){.callback = callback, .context = context});
}

int32_t HandleMenuSelection(const char* documentID, const char* menuJson, const char* itemID) {
    (void)documentID;
    (void)menuJson;
    (void)itemID;
    return Conclude("HandleMenuSelection", (Call){0});
}

int32_t InvokeCommandDialog(const char* path, char* buffer) {
    return Conclude("InvokeCommandDialog", (Call){.path = path, .buffer = buffer});
}

int32_t RegisterPlugPlug(PlugPlugState* state) { return Conclude("RegisterPlugPlug", (Call){.state = state}); }

int32_t GetSocketPort(uint32_t* port) {
    *port = 49152;
    return Conclude("GetSocketPort", (Call){.port = port});
}
