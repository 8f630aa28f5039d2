#include "doubles/plugplug/PlugPlugDouble.h"

PlugPlugDouble::PlugPlugDouble()
    : LibraryDouble({"PlugPlug", L"QUORVEL_PLUGPLUG_SCRIPT", L"QUORVEL_PLUGPLUG_RECORD", {}}) {}

PlugPlugDouble& ThePlugPlug() {
    static PlugPlugDouble sPlugPlug;
    return sPlugPlug;
}
