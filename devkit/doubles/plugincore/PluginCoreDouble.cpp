#include "doubles/plugincore/PluginCoreDouble.h"

PluginCoreDouble::PluginCoreDouble()
    : LibraryDouble({"PluginCore",
                     L"QUORVEL_PLUGINCORE_SCRIPT",
                     L"QUORVEL_PLUGINCORE_RECORD",
                     {"text", "text_hex", "whole", "repeated", "size", "enabled", "port"}}) {}

PluginCoreDouble& ThePluginCore() {
    static PluginCoreDouble sPluginCore;
    return sPluginCore;
}
