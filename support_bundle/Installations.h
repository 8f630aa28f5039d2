// What the installer tells of itself in the registry.
#pragma once

#include <string>
#include <vector>

struct Installation {
    std::wstring scope;  // for whom
    std::wstring version;
    std::wstring pluginFolder;
};

// For all users and for this one; usually one of them, or none.
std::vector<Installation> FindInstallations();
