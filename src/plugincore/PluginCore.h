/* PluginCore.h: what PluginCoreX64.dll, the font manager's library, exports to the plug-in. Plain C (C11) and C++.

   A library defines the 24 entries and exports them under their own, undecorated names: by a module definition file, or
   by defining PLUGINCORE_EXPORTS before it includes this header. 64-bit Windows has one calling convention; there is
   nothing else to state.

   - Texts: arguments are terminated UTF-8. They stay the caller's: read-only, and gone when the entry returns.
     Copy what you keep.
   - Replies: a text comes out in a buffer that the caller owns and has zeroed. `*size` is its capacity in bytes,
     which the text's terminating zero counts among: write both within it. Leave `*size` as it is, or set it to the
     length of the text, with or without the zero: callers take either. A null buffer comes with a size of 0 and
     wants no text. The buffer is gone when the entry returns. A library never hands out memory.
   - Flags: one byte, 0 or 1, in both directions. Not a Windows BOOL: that would overwrite three bytes more.
   - Results: 0 is success. "Ignored" means that the caller does not look at it.
   - Exceptions: none may leave an entry. The plug-in survives those of Visual C++ and of its own compiler, no
     others.
   - Threads: every entry is called on the host's main thread, one at a time, never within another one; while an
     entry runs, the host does not. A library may have threads of its own; they call neither the plug-in nor the
     host, and have ended when TerminatePluginCoreInterface returns.
   - Left behind: when TerminatePluginCoreInterface returns, no hook, window, thread or started process is left
     that the host would meet. The library stays loaded, and some entries are still called: see there.
   - Missing entries: a library must export all 24. One that accepts the plug-in's version and lacks some is used
     anyway: a missing entry counts as one that answers "not found" (0x15000000) and writes nothing. Below,
     "Missing:" says what else that means; without it, the library is not told, or shows nothing.

   `simhost contract X.dll` checks a library against what can be seen of this from outside. */
#ifndef QUORVEL_PLUGINCORE_PLUGINCORE_H
#define QUORVEL_PLUGINCORE_PLUGINCORE_H

/* C has no other words for it. NOLINTBEGIN(modernize-use-using,modernize-deprecated-headers) */
#include <stdint.h>

#ifdef PLUGINCORE_EXPORTS
#define PLUGINCORE_API __declspec(dllexport)
#else
#define PLUGINCORE_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Results with a meaning of their own. Any other code but 0 is a failure. */
enum {
    kPluginCoreSuccess = 0,
    /* HandleOpenExistingDocument: the document uses restricted fonts. */
    kPluginCoreRestrictedFonts = 0x12000000,
    /* What the plug-in's menu callback answers: the host's own code for a null id, label or context, and for an item
       that the host already has at the top level. */
    kPluginCoreBadParameter = 0x5041524D,
    kPluginCoreDuplicateMenuItem = 0x9000000
};

/* The interface version that the plug-in asks GetAPIVersion for. */
enum { kPluginCoreVersion = 1 };

/* Capacities of the buffers that the plug-in passes, in bytes. */
enum {
    kPluginCoreDocumentIDSize = 256,
    kPluginCoreMenusSize = 4096,
    kPluginCoreSettingsSize = 8192,
    kPluginCoreNewDocumentSize = 256,
    kPluginCoreOpenReplySize = 32767,
    kPluginCoreCommandDialogSize = 256
};

/* ---- The messaging library of the host, which plug-in and library share ---- */

/* An event. The texts belong to whoever dispatches it. How long the messaging library reads them is not documented:
   keep them. */
typedef struct PlugPlugEvent {
    const char* type;
    int32_t scope; /* kPlugPlugApplicationScope */
    const char* applicationID;
    const char* extensionID; /* may be null */
    const char* data;
} PlugPlugEvent;

enum { kPlugPlugApplicationScope = 1 };

/* Called on the main thread for each event of the type that was listened to. */
typedef void (*PlugPlugListener)(const PlugPlugEvent* event, void* context);

/* Exported by the messaging library under these names; 0 is success. */
typedef int32_t (*PlugPlugLoadExtension)(const char* extensionID);
typedef int32_t (*PlugPlugUnloadExtension)(const char* extensionID);
typedef int32_t (*PlugPlugAddEventListener)(const char* type, PlugPlugListener listener, void* context);
typedef int32_t (*PlugPlugRemoveEventListener)(const char* type, PlugPlugListener listener, void* context);
typedef int32_t (*PlugPlugDispatchEvent)(const PlugPlugEvent* event);

/* What RegisterPlugPlug receives: the library, loaded, and its functions. The plug-in owns it; it stays where it is
   until the process ends, so the pointer may be kept. It is only read, at any time. */
typedef struct PlugPlugState {
    struct HINSTANCE__* module; /* a Windows HMODULE */
    PlugPlugLoadExtension loadExtension;
    PlugPlugUnloadExtension unloadExtension;
    PlugPlugAddEventListener addListener;
    PlugPlugRemoveEventListener removeListener;
    PlugPlugDispatchEvent dispatch;
} PlugPlugState;

/* ---- Life cycle ---- */

/* Asked first, and again after TerminatePluginCoreInterface. 0 when the library understands `interfaceVersion`; stores
   its own version. Any other result: the library is not used. Missing: the library is refused, and shown to the user.
 */
PLUGINCORE_API int32_t GetAPIVersion(uint32_t* value, int32_t interfaceVersion);

/* Called once when the host starts. `text` tells who calls: the path of the plug-in's file; other front ends pass a
   name of their own, of at most 64 characters. */
PLUGINCORE_API int32_t InitializePluginCoreInterface(const char* text);

/* Called once when the host ends; its result is the plug-in's answer to the host. What is left may be called: the host
   can offer its menus and panels until the process ends. GetAPIVersion, GetSettings and GetSocketPort are, in fact.
   Missing: shut-down answers 0. */
PLUGINCORE_API int32_t TerminatePluginCoreInterface(void);

/* Stores 1 in `*isEnabled` while fonts are to be activated automatically, else 0. `query` is 1. The result is ignored:
   the flag decides. Missing: as if disabled: no document is told, no dialog suppressed, and the ticks stop. */
PLUGINCORE_API int32_t PluginIsEnabled(uint8_t query, uint8_t* isEnabled);

/* Both called at every tick of the host's idle timer, up to 60 times a second: return at once. Ignored. `process` is
   1. */
PLUGINCORE_API int32_t IdleEvent(void);
PLUGINCORE_API int32_t ProcessPanelMessages(uint8_t process);

/* The settings as JSON. Members that are absent are 0, and so are all without an answer.

       {"DialogSuppression": 0, "PickBestMatch": 0}

   DialogSuppression  2 or more leaves the host's missing-font dialogs alone
   PickBestMatch      0: a person resolves the fonts of an opened document (InvokeResolveDialog)

   Asked at start-up, at shut-down (after TerminatePluginCoreInterface) and when a document is opened with fonts to
   resolve. Missing: all settings are 0. */
PLUGINCORE_API int32_t GetSettings(char* buffer, uint64_t* size);

/* ---- Documents ---- */

/* Paths are what the host tells, in UTF-8: absolute as a rule, also with slashes, longer than 260 bytes where Windows
   allows it; a bare title ("Recovered") for a document without a file, or empty. A report says what a document uses; it
   is empty when nobody could tell, and for a closed document that was not written since it was opened:

       {"DocumentFonts": [{"PostScriptName": "Garamond-Bold"}, {"PostScriptName": "Optima-Roman"}],
        "LinkedDocuments": ["C:\\Job\\Logo.pdf"]} */

/* Called before the host opens a file, then its answer is ignored, and when it has opened it: activate the fonts of the
   document. Reply: empty when nothing is left to do, else the fonts that a person should resolve, in a form of the
   library's own. kPluginCoreRestrictedFonts: InvokeRestrictedFontsDialog follows. Other front ends pass a null buffer
   and a size of 0. Missing: the host's missing-font dialogs stay. */
PLUGINCORE_API int32_t HandleOpenExistingDocument(const char* path, char* buffer, uint64_t* size);

/* Shows the document's restricted fonts; `buffer` holds the reply of the open call. Ignored. */
PLUGINCORE_API int32_t InvokeRestrictedFontsDialog(const char* path, char* buffer);

/* Lets a person choose among the fonts of an open reply, which `text` holds; the choice takes its place. `*size` is
   what the open call has left in it: the buffer's capacity, or the length of the text; then no more than the text and
   its zero may be written. 0 when the choice is to be activated. Missing: as if the person had declined. */
PLUGINCORE_API int32_t InvokeResolveDialog(char* text, uint64_t* size);

/* Follows the resolve dialog, with the choice in `text`. Also called for a closed document that was never saved, with
   an empty path and the document's report in `text`. `*size` as in InvokeResolveDialog. Ignored. */
PLUGINCORE_API int32_t ActivateChosenFonts(const char* path, char* text, uint64_t* size);

/* A document was created. Ignored. */
PLUGINCORE_API int32_t HandleCreateNewDocument(char* buffer, uint64_t* size);

/* A document was saved, or closed and found to be written since it was opened. */
PLUGINCORE_API int32_t HandleSaveDocument(const char* path, const char* report);

/* A document was closed. */
PLUGINCORE_API int32_t HandleCloseDocument(const char* path, const char* report);

/* The identifier by which the library knows the document; empty when it knows none. Ignored. Missing: empty. */
PLUGINCORE_API int32_t GetIDForDocument(const char* path, char* buffer, uint64_t* size);

/* What the document uses now; told before a menu command that may need it. Ignored. */
PLUGINCORE_API int32_t UpdateDocumentFontUsage(const char* documentID, const char* report);

/* Exported, and never called: nobody knows their arguments. */
PLUGINCORE_API int32_t GetDocumentFontUsage(void);
PLUGINCORE_API int32_t SetPathForDocument(void);

/* ---- Menus ---- */

/* The menu description as JSON, an array of items (or one item):

       [{"id": "fonts", "title": "Fonts", "enabled": true, "checked": false, "child": [
           {"id": "activate", "title": "Activate Document Fonts", "enabled": true, "checked": true, "child": []}]},
        {"id": "line-1", "title": "", "enabled": true, "checked": false, "child": []},
        {"id": "about", "title": "About the Font Manager", "enabled": true, "checked": false, "child": []}]

   All five members are needed in every item: the plug-in gives up a refresh of the marks at an item that lacks one. An
   empty title, or null, is a separator; without children, `child` may be null too. Further members are the library's
   own. Asked at start-up, then each time a menu opens; the result is ignored at start-up, so write nothing when you
   fail. Missing: no items; the marks stay as they are. */
PLUGINCORE_API int32_t GetMenus(const char* path, char* buffer, uint64_t* size);

/* Adds one menu item; 0 is success. `id` and `label` must not be null. `itemText` is what the menu shows; null or empty
   is a separator. `label` names the item's sub-menu, and is what its children give as `parentID`; at the top level
   `parentID` is null. `checked` and `enabled` count once the menu opens. The texts are copied. An item that is refused
   does not end the creation. Ids are unique, and so are the labels of sub-menus and of items at the top level, those
   of separators aside. `context` is the one of CreateMenusFromJSONBuffer. */
typedef int32_t (*PluginCoreMenuCallback)(const char* id, const char* label, const char* itemText, uint8_t checked,
                                          uint8_t enabled, uint8_t hasSubMenu, const char* parentID, void* context);

/* Parses the description that GetMenus gave and calls back once per item, each before its children, on the same thread,
   and never after the return. Result: 0, or the plug-in registers for no notification. Missing: neither menu items nor
   notifications. */
PLUGINCORE_API int32_t CreateMenusFromJSONBuffer(const char* json, PluginCoreMenuCallback callback, void* context);

/* The item was chosen. `menuJson` is the description that the last refresh read, or empty. Ignored. */
PLUGINCORE_API int32_t HandleMenuSelection(const char* documentID, const char* menuJson, const char* itemID);

/* Shows the library's about dialog; `buffer` has kPluginCoreCommandDialogSize zeroed bytes. The result is the plug-in's
   answer to the host. Missing: the about box answers 0. */
PLUGINCORE_API int32_t InvokeCommandDialog(const char* path, char* buffer);

/* ---- Panel ---- */

/* Gives the library the event bus that the font manager's panel listens on. May come again. Ignored. */
PLUGINCORE_API int32_t RegisterPlugPlug(PlugPlugState* state);

/* Stores the port that the panel is to talk to. Also asked after TerminatePluginCoreInterface. Missing: the panel is
   not answered. */
PLUGINCORE_API int32_t GetSocketPort(uint32_t* port);

/* ENTRY(name) for each entry, in the order that is part of the contract. */
#define PLUGINCORE_ENTRIES(ENTRY)        \
    ENTRY(ActivateChosenFonts)           \
    ENTRY(CreateMenusFromJSONBuffer)     \
    ENTRY(GetAPIVersion)                 \
    ENTRY(GetDocumentFontUsage)          \
    ENTRY(GetIDForDocument)              \
    ENTRY(GetMenus)                      \
    ENTRY(GetSettings)                   \
    ENTRY(GetSocketPort)                 \
    ENTRY(HandleCloseDocument)           \
    ENTRY(HandleCreateNewDocument)       \
    ENTRY(HandleMenuSelection)           \
    ENTRY(HandleOpenExistingDocument)    \
    ENTRY(HandleSaveDocument)            \
    ENTRY(IdleEvent)                     \
    ENTRY(InitializePluginCoreInterface) \
    ENTRY(InvokeCommandDialog)           \
    ENTRY(InvokeResolveDialog)           \
    ENTRY(InvokeRestrictedFontsDialog)   \
    ENTRY(PluginIsEnabled)               \
    ENTRY(ProcessPanelMessages)          \
    ENTRY(RegisterPlugPlug)              \
    ENTRY(SetPathForDocument)            \
    ENTRY(TerminatePluginCoreInterface)  \
    ENTRY(UpdateDocumentFontUsage)

/* NOLINTEND(modernize-use-using,modernize-deprecated-headers) */

#ifdef __cplusplus
}
#endif

#endif
