// The double of the host's messaging library inside the test program, which exports the functions and is what the
// plug-in gets when it loads the library while a LoadablePlugPlug lives. Its record and its script are those of
// ThePlugPlug(); every test begins with an empty one of each, and with a bus that nobody listens to.
//
// Thread: the one that runs the tests.
#pragma once

#include <windows.h>

#include <string>

#include "doubles/common/ImportPatch.h"
#include "doubles/plugplug/PlugPlugDouble.h"

// The call by which the plug-in hands the loaded library to the PluginCore.
inline const std::string kRegisterPlugPlug = "RegisterPlugPlug('module, load, unload, add, remove, dispatch')";

// Sends the plug-in's listener a request, as the library does for a panel.
void SendPanelRequest();

// As long as it lives, loading "PlugPlug.dll" gives the test program, which is recorded as "LoadLibraryW()". The script
// can refuse it under that name.
class LoadablePlugPlug {
  public:
    LoadablePlugPlug();

  private:
    ImportPatch mPatch;
};
