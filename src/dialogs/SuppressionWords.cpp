#include "dialogs/SuppressionWords.h"

#include "dialogs/SuppressionWordLines.h"
#include "plugincore/PCILoader.h"
#include "plugincore/PluginCoreLocation.h"
#include "support/TextConversion.h"
#include "support/TextFile.h"
#include "support/UntilUnloaded.h"

namespace {

const UntilUnloaded<std::vector<std::wstring>> sSuppressionWordList;
// Where the file was found, with its separator. Nothing reads it; kept for debugging.
const UntilUnloaded<std::string> sSuppressionFolder;

// The folder of the PluginCore library with its separator; empty when there is none.
std::string PluginCoreFolder() {
    const PCILoader* const pluginCore = PCILoader::GetSharedInstance();
    std::string path;
    std::string version;
    std::uint32_t missingCount = 0;
    if (pluginCore == nullptr || !pluginCore->IsLoaded(&path, &version, &missingCount)) {
        return {};
    }
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
}

}  // namespace

const std::vector<std::wstring>& SuppressionWordList() { return *sSuppressionWordList; }

void AddSuppressionWord(const std::string& word) { sSuppressionWordList->push_back(Utf16FromUtf8(word)); }

void AddDefaultSuppressionWords() {
    for (const char* word : {"Font", "font", "fuente", "police", "Caratteri", "Schriftprobleme", "Schriftart suchen",
                             "\xE3\x83\x95\xE3\x82\xA9\xE3\x83\xB3\xE3\x83\x88"}) {
        AddSuppressionWord(word);
    }
}

bool ReadSuppressionFile(bool& hasEntries) {
    const std::string folder = PluginCoreFolder();
    if (folder.empty()) {
        return false;
    }
    hasEntries = false;
    const std::string path = folder + kSuppressionFileName;
    if (!IsRegularFile(path)) {
        return false;
    }
    *sSuppressionFolder = folder;
    // Narrow like the library's own path. A file that cannot be opened has no entries.
    const std::string text = ReadTextFile(path.c_str()).value_or(std::string());
    hasEntries = AppendSuppressionWords(text, *sSuppressionWordList);
    return true;
}
