#pragma once

#include <cstdint>

// The PluginCore's settings as far as the plug-in uses them. A setting that is absent or is no number is 0.
struct PluginCoreSettings {
    std::int32_t dialogSuppression = 0;  // 2 and above: the host's dialogs are left alone
    std::int32_t pickBestMatch = 0;      // 0: a person resolves the fonts of an opened document
};

// Asks the PluginCore; all settings are 0 when it does not deliver a JSON object.
// Thread: main.
PluginCoreSettings ReadPluginCoreSettings();
