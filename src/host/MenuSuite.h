#pragma once

#include "host/HostTypes.h"
#include "host/UnicodeString.h"

constexpr const char* kAIMenuSuite = "AI Menu Suite";
constexpr std::int32_t kAIMenuSuiteVersion = 11;

constexpr std::int32_t kMenuItemWantsUpdateOption = 1;
constexpr std::int32_t kMenuItemIsSeparator = 4;

// Where a new item goes and what it shows; the host copies both.
struct AIPlatformAddMenuItemDataUS {
    const char* groupName;
    ai::UnicodeStringData itemText;
};

// Handles stay the host's.
// Thread: main.
struct AIMenuSuite {
    AIErr (*AddMenuItem)(SPPluginRef self, const char* key, AIPlatformAddMenuItemDataUS* data, std::int32_t options,
                         AIMenuItemHandle* item);                                                // 0
    void* unused1[1];                                                                            // 1
    AIErr (*GetMenuItemKeyboardShortcutDictionaryKey)(AIMenuItemHandle item, const char** key);  // 2
    void* unused3[2];                                                                            // 3 to 4
    AIErr (*GetMenuItemPlugin)(AIMenuItemHandle item, SPPluginRef* plugin);                      // 5
    AIErr (*CountMenuItems)(std::int32_t* count);                                                // 6
    AIErr (*GetNthMenuItem)(std::int32_t n, AIMenuItemHandle* item);                             // 7; n from 0
    void* unused8[3];                                                                            // 8 to 10
    AIErr (*EnableItem)(AIMenuItemHandle item);                                                  // 11
    AIErr (*DisableItem)(AIMenuItemHandle item);                                                 // 12
    AIErr (*GetItemText)(AIMenuItemHandle item, ai::UnicodeStringData& text);                    // 13
    void* unused14[2];                                                                           // 14 to 15
    AIErr (*CheckItem)(AIMenuItemHandle item, AIBoolean checked);                                // 16
    void* unused17[2];                                                                           // 17 to 18
    AIErr (*AddMenuGroupAsSubMenu)(const char* name, std::int32_t options, AIMenuItemHandle item,
                                   AIMenuGroupHandle* group);  // 19
    void* unused20[15];                                        // 20 to 34
};
