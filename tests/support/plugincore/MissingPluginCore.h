// No PluginCore is loaded, and none can be found, while this lives: one that was loaded before is forgotten.
#pragma once

#include <windows.h>

#include "doubles/common/ImportPatch.h"
#include "plugincore/PCILoader.h"

class MissingPluginCore {
  public:
    MissingPluginCore() { delete PCILoader::GetSharedInstance(); }

  private:
    static BOOL WINAPI ListNoProcesses(DWORD*, DWORD, DWORD*) { return FALSE; }
    static HMODULE WINAPI LoadNothing(LPCSTR) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }

    ImportPatch mProcesses{"K32EnumProcesses", AsReplacement(ListNoProcesses)};
    ImportPatch mLibrary{"LoadLibraryA", AsReplacement(LoadNothing)};
};
