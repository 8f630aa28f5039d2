#include "doubles/common/ThisLibrary.h"

const SubstituteLibrary kThisLibrary = {"PluginCore", L"QUORVEL_PLUGINCORE_SCRIPT", L"QUORVEL_PLUGINCORE_RECORD"};
