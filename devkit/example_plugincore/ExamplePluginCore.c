/* A small PluginCore in plain C, complete: it keeps the open documents with their fonts, offers a menu with a check mark,
   and asks a person about fonts that it does not have. Copy it to begin a library of your own; it needs nothing but
   PluginCore.h and the C library:

       cl /LD /I include ExamplePluginCore.c
       x86_64-w64-mingw32-gcc -shared -static -Iinclude -o MyCore.dll ExamplePluginCore.c

   where "include" is the folder that holds plugincore/PluginCore.h (src in the project, include in the installed kit).

   What it activates are names in a list. Everything else is as the contract wants it. All calls come on the host's main
   thread, so nothing is locked. */
#define PLUGINCORE_EXPORTS
#include "plugincore/PluginCore.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* Results of our own; any code but 0 is a failure. */
enum { kTooSmall = 1, kNoMemory = 2, kOtherVersion = 3 };

static const char* const kCatalogue[] = {"Garamond-Bold", "Frutiger-Light", "Optima-Roman", "Univers-Condensed"};

/* ---- Replies ---- */

/* Writes the text and its zero, or only a zero when it does not fit: half a JSON is worse than none. */
static int32_t Reply(const char* text, char* buffer, const uint64_t* size) {
    const size_t needed = strlen(text) + 1;
    if (buffer == NULL || *size == 0) {
        return kPluginCoreSuccess;
    }
    if (needed > *size) {
        buffer[0] = '\0';
        return kTooSmall;
    }
    memcpy(buffer, text, needed);
    return kPluginCoreSuccess;
}

static char* CopyOf(const char* text) {
    const size_t size = strlen(text) + 1;
    char* const copy = malloc(size);
    return copy == NULL ? NULL : memcpy(copy, text, size);
}

/* ---- Documents ---- */

typedef struct Document {
    struct Document* next;
    unsigned number;
    char* path;
    char* report; /* the last one; its texts were ours only during the call, so it is a copy */
} Document;

static Document* sDocuments;
static unsigned sLastNumber;

static Document* FindDocument(const char* path) {
    Document* document = sDocuments;
    while (document != NULL && strcmp(document->path, path) != 0) {
        document = document->next;
    }
    return document;
}

/* The document of that path, made when it is new; null without memory. A document is opened more than once: first when
   the host is about to read the file. */
static Document* NeedDocument(const char* path) {
    Document* document = FindDocument(path);
    if (document != NULL) {
        return document;
    }
    document = calloc(1, sizeof *document);
    if (document != NULL) {
        document->path = CopyOf(path);
        document->report = CopyOf("");
        document->number = ++sLastNumber;
        document->next = sDocuments;
        sDocuments = document;
    }
    if (document != NULL && (document->path == NULL || document->report == NULL)) {
        sDocuments = document->next;
        free(document->path);
        free(document->report);
        free(document);
        return NULL;
    }
    return document;
}

static int32_t KeepReport(const char* path, const char* report) {
    Document* const document = NeedDocument(path);
    char* const copy = CopyOf(report);
    if (document == NULL || copy == NULL) {
        free(copy);
        return kNoMemory;
    }
    free(document->report);
    document->report = copy;
    return kPluginCoreSuccess;
}

static void ForgetDocuments(void) {
    while (sDocuments != NULL) {
        Document* const next = sDocuments->next;
        free(sDocuments->path);
        free(sDocuments->report);
        free(sDocuments);
        sDocuments = next;
    }
    sLastNumber = 0;
}

/* ---- Fonts ---- */

static int IsInCatalogue(const char* name, size_t length) {
    size_t i;
    for (i = 0; i < sizeof kCatalogue / sizeof *kCatalogue; ++i) {
        if (strlen(kCatalogue[i]) == length && memcmp(kCatalogue[i], name, length) == 0) {
            return 1;
        }
    }
    return 0;
}

/* The names in the report that the catalogue lacks, one a line: what a person is to resolve. As many as fit. */
static void ListMissingFonts(const char* report, char* list, size_t capacity) {
    static const char kKey[] = "\"PostScriptName\":\"";
    size_t used = 0;
    const char* at = strstr(report, kKey);
    list[0] = '\0';
    while (at != NULL) {
        const char* const name = at + strlen(kKey);
        const size_t length = strcspn(name, "\"");
        if (!IsInCatalogue(name, length) && used + length + 2 <= capacity) {
            memcpy(list + used, name, length);
            used += length;
            list[used++] = '\n';
            list[used] = '\0';
        }
        at = strstr(name, kKey);
    }
}

/* ---- Menus ---- */

static uint8_t sActivatesAutomatically = 1;

typedef struct Item {
    const char* id;
    const char* title; /* empty: a separator */
    const char* parent; /* the title of the item above; null at the top level */
    int isAutomatic;
    uint8_t hasSubMenu;
} Item;

/* Parents first. */
static const Item kItems[] = {
    {"fonts", "Fonts", NULL, 0, 1},
    {"automatic", "Activate Automatically", "Fonts", 1, 0},
    {"line", "", NULL, 0, 0},
    {"about", "About the Example", NULL, 0, 0},
};

static void WriteMenus(char* json, size_t capacity) {
    snprintf(json, capacity,
             "[{\"id\":\"fonts\",\"title\":\"Fonts\",\"enabled\":true,\"checked\":false,\"child\":["
             "{\"id\":\"automatic\",\"title\":\"Activate Automatically\",\"enabled\":true,\"checked\":%s,\"child\":[]}]},"
             "{\"id\":\"line\",\"title\":\"\",\"enabled\":true,\"checked\":false,\"child\":[]},"
             "{\"id\":\"about\",\"title\":\"About the Example\",\"enabled\":true,\"checked\":false,\"child\":[]}]",
             sActivatesAutomatically ? "true" : "false");
}

/* ---- The entries, in the order of the header ---- */

int32_t GetAPIVersion(uint32_t* value, int32_t interfaceVersion) {
    *value = kPluginCoreVersion;
    return interfaceVersion == kPluginCoreVersion ? kPluginCoreSuccess : kOtherVersion;
}

int32_t InitializePluginCoreInterface(const char* text) {
    (void)text;
    sActivatesAutomatically = 1;
    return kPluginCoreSuccess;
}

/* Version, settings and port are asked for after this. */
int32_t TerminatePluginCoreInterface(void) {
    ForgetDocuments();
    return kPluginCoreSuccess;
}

int32_t PluginIsEnabled(uint8_t query, uint8_t* isEnabled) {
    (void)query;
    *isEnabled = sActivatesAutomatically;
    return kPluginCoreSuccess;
}

int32_t IdleEvent(void) { return kPluginCoreSuccess; }

int32_t ProcessPanelMessages(uint8_t process) {
    (void)process;
    return kPluginCoreSuccess;
}

int32_t GetSettings(char* buffer, uint64_t* size) {
    return Reply("{\"DialogSuppression\":0,\"PickBestMatch\":0}", buffer, size);
}

/* The fonts that a document uses are known from the reports of an earlier time it was open. */
int32_t HandleOpenExistingDocument(const char* path, char* buffer, uint64_t* size) {
    char missing[1024];
    Document* const document = NeedDocument(path);
    if (document == NULL) {
        return kNoMemory;
    }
    ListMissingFonts(document->report, missing, sizeof missing);
    return Reply(missing, buffer, size);
}

int32_t InvokeRestrictedFontsDialog(const char* path, char* buffer) {
    (void)path;
    (void)buffer;
    return kPluginCoreSuccess;
}

/* A library with a window asks here. This one chooses for the person: the first font of the catalogue for all. */
int32_t InvokeResolveDialog(char* text, uint64_t* size) { return Reply(kCatalogue[0], text, size); }

int32_t ActivateChosenFonts(const char* path, char* text, uint64_t* size) {
    (void)path;
    (void)text;
    (void)size;
    return kPluginCoreSuccess;
}

int32_t HandleCreateNewDocument(char* buffer, uint64_t* size) { return Reply("", buffer, size); }

int32_t HandleSaveDocument(const char* path, const char* report) { return KeepReport(path, report); }

/* Its report is kept, for the next time it is opened. One that was not changed comes without a report, and keeps what is
   known of it. */
int32_t HandleCloseDocument(const char* path, const char* report) {
    return report[0] == '\0' ? kPluginCoreSuccess : KeepReport(path, report);
}

int32_t GetIDForDocument(const char* path, char* buffer, uint64_t* size) {
    char id[32] = "";
    const Document* const document = FindDocument(path);
    if (document != NULL) {
        snprintf(id, sizeof id, "document-%u", document->number);
    }
    return Reply(id, buffer, size);
}

int32_t UpdateDocumentFontUsage(const char* documentID, const char* report) {
    unsigned number = 0;
    const Document* document = sDocuments;
    if (sscanf(documentID, "document-%u", &number) != 1) {
        return kPluginCoreSuccess;
    }
    while (document != NULL && document->number != number) {
        document = document->next;
    }
    return document == NULL ? kPluginCoreSuccess : KeepReport(document->path, report);
}

int32_t GetDocumentFontUsage(void) { return kPluginCoreSuccess; }

int32_t SetPathForDocument(void) { return kPluginCoreSuccess; }

int32_t GetMenus(const char* path, char* buffer, uint64_t* size) {
    char json[1024];
    (void)path;
    WriteMenus(json, sizeof json);
    return Reply(json, buffer, size);
}

/* The description is our own, so it need not be parsed again. An item that the host refuses is no failure. */
int32_t CreateMenusFromJSONBuffer(const char* json, PluginCoreMenuCallback callback, void* context) {
    size_t i;
    (void)json;
    for (i = 0; i < sizeof kItems / sizeof *kItems; ++i) {
        const Item* const item = &kItems[i];
        const uint8_t checked = item->isAutomatic ? sActivatesAutomatically : 0;
        callback(item->id, item->title, item->title, checked, 1, item->hasSubMenu, item->parent, context);
    }
    return kPluginCoreSuccess;
}

int32_t HandleMenuSelection(const char* documentID, const char* menuJson, const char* itemID) {
    (void)documentID;
    (void)menuJson;
    if (strcmp(itemID, "automatic") == 0) {
        sActivatesAutomatically = !sActivatesAutomatically;
    }
    return kPluginCoreSuccess;
}

int32_t InvokeCommandDialog(const char* path, char* buffer) {
    (void)path;
    (void)buffer;
    return kPluginCoreSuccess;
}

int32_t RegisterPlugPlug(PlugPlugState* state) {
    (void)state;
    return kPluginCoreSuccess;
}

/* No panel of ours listens. */
int32_t GetSocketPort(uint32_t* port) {
    *port = 0;
    return kPluginCoreSuccess;
}
