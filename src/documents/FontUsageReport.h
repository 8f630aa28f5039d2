// The one message that tells the PluginCore what a document needs: {"DocumentFonts": [{"PostScriptName": name}, ...],
// "LinkedDocuments": [path, ...]} as compact JSON. All texts are UTF-8.
// Thread: any.
#pragma once

#include <string>
#include <vector>

#include "documents/FontList.h"

using PlacedFileList = std::vector<std::string>;

namespace CrossPluginUtils {

// Sets the record's "PostScriptName"; its other entries stay as they are. A record that had a name takes no memory for
// another one that is not longer.
void CreateFontDataForOneFont(const std::string& name, FontRecord& record);

// Appends a copy of the record. With `checkDuplicates` only when no record of the list has the same "PostScriptName",
// to the byte; a missing name counts as "". Returns whether it was appended.
bool AddFontToArray(const FontRecord& record, bool checkDuplicates, FontList& fonts);

}  // namespace CrossPluginUtils

// The report's text. Both members are always there; an empty list gives an empty array. Throws utfcpp's exceptions for
// a name or path that is not UTF-8.
std::string BuildFontUsageReport(const FontList& fonts, const PlacedFileList& placedFiles);
