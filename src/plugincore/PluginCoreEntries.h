// The 24 entries of PluginCoreX64.dll: the contract between the plug-in and the font manager.
//
// Plain C exports. Texts go in as terminated narrow strings (UTF-8) that stay the caller's. A text comes out in a
// buffer that the caller owns and has zeroed, with a pointer to a 64-bit size that holds the buffer's capacity in
// bytes; the PluginCore never hands out memory. A flag is one byte holding 0 or 1. Every entry returns a 32-bit result,
// 0 for success; for entries marked "ignored" the caller does not look at it.
//
// A library must export all 24. One that accepts the plug-in's version and lacks some is used anyway: a missing
// entry answers "not found" and writes nothing, and the message goes on. "Missing:" says what else that means;
// without it, the PluginCore is simply not told, or shows nothing.
//
// Thread: main.
#pragma once

#include <cstdint>

// Adds one menu item (CreateMenusFromJSONBuffer calls it once per item, parents first); 0 is success. `itemText` and
// `parentID` may be null. No exception may leave it.
// Lifetime: of the call of CreateMenusFromJSONBuffer; the texts are copied.
using PluginCoreMenuCallback = std::int32_t (*)(const char* id, const char* label, const char* itemText,
                                                std::uint8_t checked, std::uint8_t enabled, std::uint8_t hasSubMenu,
                                                const char* parentID, void* context);

// The PlugPlug state that RegisterPlugPlug receives.
// Lifetime: until the process ends.
struct PlugPlugState;

// ENTRY(name, arguments), in alphabetical order: the order is part of the contract.
// clang-format off
#define QUORVEL_PLUGINCORE_ENTRIES(ENTRY)                                                                             \
    /* After the resolve dialog, and for a closed document that was never saved (empty path); ignored. */             \
    ENTRY(ActivateChosenFonts, (const char* path, char* text, std::uint64_t* size))                                   \
    /* Parses the menu description and calls back once per item. */                                                  \
    /* Missing: No menu items, and no notifications: those are registered only after the menus. */                    \
    ENTRY(CreateMenusFromJSONBuffer, (const char* json, PluginCoreMenuCallback callback, void* context))              \
    /* 0 when the library understands the plug-in's interface version. */                                            \
    /* Missing: The library is refused, and shown to the user. */                                                     \
    ENTRY(GetAPIVersion, (std::uint32_t* value, std::int32_t interfaceVersion))                                       \
    /* Bound, never called. */                                                                                       \
    ENTRY(GetDocumentFontUsage, ())                                                                                   \
    /* The document's identifier; 256 bytes; ignored. */                                                             \
    /* Missing: Menu choices carry an empty identifier. */                                                            \
    ENTRY(GetIDForDocument, (const char* path, char* buffer, std::uint64_t* size))                                    \
    /* The menu description as JSON; 4096 bytes; ignored at start-up. */                                             \
    /* Missing: The description is empty; the marks stay as they are. */                                              \
    ENTRY(GetMenus, (const char* path, char* buffer, std::uint64_t* size))                                            \
    /* The settings as JSON; 8192 bytes. */                                                                          \
    /* Missing: All settings are 0. */                                                                                \
    ENTRY(GetSettings, (char* buffer, std::uint64_t* size))                                                           \
    /* The port that the panel talks to. Its requests go on after TerminatePluginCoreInterface. */                   \
    /* Missing: The panel is not answered. */                                                                         \
    ENTRY(GetSocketPort, (std::uint32_t* port))                                                                       \
    ENTRY(HandleCloseDocument, (const char* path, const char* report))                                                \
    /* 256 bytes; ignored. */                                                                                        \
    ENTRY(HandleCreateNewDocument, (char* buffer, std::uint64_t* size))                                               \
    /* Ignored. */                                                                                                   \
    ENTRY(HandleMenuSelection, (const char* documentID, const char* menuJson, const char* itemID))                    \
    /* 32767 bytes, or null and 0. kRestrictedFonts, or the buffer holds the fonts to resolve. */                    \
    /* Missing: The host's missing-font dialogs stay: nobody has activated anything. */                               \
    ENTRY(HandleOpenExistingDocument, (const char* path, char* buffer, std::uint64_t* size))                          \
    ENTRY(HandleSaveDocument, (const char* path, const char* report))                                                 \
    /* Every tick of the idle timer; ignored. */                                                                     \
    ENTRY(IdleEvent, ())                                                                                              \
    /* The plug-in's own path. */                                                                                    \
    ENTRY(InitializePluginCoreInterface, (const char* text))                                                          \
    /* The PluginCore's about dialog; 256 bytes. */                                                                  \
    /* Missing: The about box answers 0. */                                                                           \
    ENTRY(InvokeCommandDialog, (const char* path, char* buffer))                                                      \
    /* Lets a person choose among the fonts of an open reply; 0 when they are to be activated. */                    \
    /* Missing: As if the user had declined with that code; ActivateChosenFonts follows, the hook stays idle. */      \
    ENTRY(InvokeResolveDialog, (char* text, std::uint64_t* size))                                                     \
    /* Ignored. */                                                                                                   \
    ENTRY(InvokeRestrictedFontsDialog, (const char* path, char* buffer))                                              \
    /* Ignored: the flag decides. */                                                                                 \
    /* Missing: As if it were disabled: no document is told, no dialog suppressed, and the ticks stop. */             \
    ENTRY(PluginIsEnabled, (std::uint8_t query, std::uint8_t* isEnabled))                                             \
    /* Ignored. */                                                                                                   \
    ENTRY(ProcessPanelMessages, (std::uint8_t process))                                                               \
    /* Ignored. */                                                                                                   \
    ENTRY(RegisterPlugPlug, (PlugPlugState * state))                                                                  \
    /* Bound, never called. */                                                                                       \
    ENTRY(SetPathForDocument, ())                                                                                     \
    /* Missing: Shut-down answers 0. */                                                                               \
    ENTRY(TerminatePluginCoreInterface, ())                                                                           \
    /* Ignored. */                                                                                                   \
    ENTRY(UpdateDocumentFontUsage, (const char* documentID, const char* report))
// clang-format on
