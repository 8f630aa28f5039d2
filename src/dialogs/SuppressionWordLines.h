// The lines of a word file. Needs no Windows.
// Thread: any.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// In the word file's folder, the library's own; said in the log, too.
inline constexpr const char* kSuppressionFileName = "DialogSuppression.tmp";

// Appends every line of the text to `words` as UTF-16, each exactly as it stands; the last line may lack its end. A
// line that is not UTF-8 is left out with a log line. Returns whether there was a line at all.
bool AppendSuppressionWords(std::string_view text, std::vector<std::wstring>& words);
