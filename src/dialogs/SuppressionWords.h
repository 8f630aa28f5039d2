// The words that mark a dialog's title as one to dismiss. Process-wide; words are only ever added.
// Thread: main.
#pragma once

#include <string>
#include <vector>

// In the order in which they were added; repeats do no harm.
// Lifetime: as long as the module is loaded; iterators until the next word is added.
const std::vector<std::wstring>& SuppressionWordList();

// Appends a word. Throws utfcpp's exceptions when it is not UTF-8.
void AddSuppressionWord(const std::string& word);

// Appends the built-in words.
void AddDefaultSuppressionWords();

// Appends every line of "DialogSuppression.tmp" beside the PluginCore library, each exactly as it stands. Returns
// whether the file was found; `hasEntries`, which is true only when a line was read, counts only then. A line that is
// not UTF-8 is an entry, but adds no word.
bool ReadSuppressionFile(bool& hasEntries);
