#include "dialogs/SuppressionWordLines.h"

#include <utf8cpp/utf8.h>

#include "support/Log.h"
#include "support/TextConversion.h"

bool AppendSuppressionWords(std::istream& lines, std::vector<std::wstring>& words) {
    bool hasLines = false;
    for (std::string line; std::getline(lines, line);) {
        hasLines = true;
        try {
            words.push_back(Utf16FromUtf8(line));
        } catch (const utf8::exception& exception) {
            LogMessage(kLogNote, "...ignoring a line of %s: %s", kSuppressionFileName, exception.what());
        }
    }
    return hasLines;
}
