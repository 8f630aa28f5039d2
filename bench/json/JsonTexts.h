// Texts like those that the plug-in exchanges with the font manager.
#pragma once

#include <string>

namespace bench {

// What GetSettings answers.
std::string SettingsText();

// What GetMenus answers: four items with twelve sub-items each.
std::string MenuText();

// The font-usage report of a document with so many fonts and so many placed files.
std::string ReportText(int fonts, int placedFiles);

}  // namespace bench
