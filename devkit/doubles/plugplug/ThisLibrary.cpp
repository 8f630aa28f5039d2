#include "doubles/common/ThisLibrary.h"

const SubstituteLibrary kThisLibrary = {"PlugPlug", L"QUORVEL_PLUGPLUG_SCRIPT", L"QUORVEL_PLUGPLUG_RECORD"};
