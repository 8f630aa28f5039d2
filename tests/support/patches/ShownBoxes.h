// The message boxes that the plug-in means to show: kept, and never opened.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "doubles/common/ImportPatch.h"

struct Box {
    HWND owner = nullptr;
    std::string text;
    std::string caption;
    UINT style = 0;

    bool operator==(const Box&) const = default;
};
inline std::vector<Box> sBoxes;

inline int WINAPI RecordBox(HWND owner, LPCSTR text, LPCSTR caption, UINT style) {
    sBoxes.push_back({owner, text, caption, style});
    return IDOK;
}

// The one about a library that does not fit.
inline Box Incompatible(const std::string& path, const std::string& version) {
    return {nullptr, path + " (version " + version + ")", "Incompatible PluginCore", 0x11000};
}

// While it lives boxes are kept; it begins without any.
class ShownBoxes {
  public:
    ShownBoxes() { sBoxes.clear(); }

  private:
    ImportPatch mPatch{"MessageBoxA", AsReplacement(RecordBox)};
};
