// The PluginCore's settings as members of a JSON object. Needs neither Windows nor PluginCore.
// Thread: any.
#pragma once

#include "dialogs/PluginCoreSettings.h"
#include "json/JsonValue.h"

// A member's number is cut to a whole one; one that does not fit becomes the nearest that does. All settings are 0 for
// a root that is no object, and for a null root (a text that did not parse).
PluginCoreSettings SettingsFromJson(const JsonValue* root);
