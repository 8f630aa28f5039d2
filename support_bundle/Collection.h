// Finds what support wants to see and puts it into a bundle.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Bundle.h"

struct Sources {
    std::vector<std::filesystem::path> logFolders;
    std::vector<std::filesystem::path> launchInfoFolders;  // that may hold a launch-info file
    std::vector<std::filesystem::path> installLogs;        // files of the installer
    std::vector<DWORD> processes;                          // besides those that are found
};

// Where the plug-in, the core application and the installer leave their files.
Sources UsualSources();

// Adds everything that is there: about.txt, the logs, the launch-info files, the word files of the dialogs, the
// installer's logs, and the modules of each running program.
void Collect(const Sources& sources, const SYSTEMTIME& now, Bundle& bundle);
