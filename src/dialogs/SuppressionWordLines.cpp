#include "dialogs/SuppressionWordLines.h"

#include <utf8cpp/utf8.h>

#include "support/Log.h"
#include "support/TextConversion.h"
#include "support/TextLines.h"

bool AppendSuppressionWords(std::string_view text, std::vector<std::wstring>& words) {
    bool hasLines = false;
    for (std::string_view line; TakeLine(text, line);) {
        hasLines = true;
        try {
            words.push_back(Utf16FromUtf8(line));
        } catch (const utf8::exception& exception) {
            LogMessage(kLogNote, "...ignoring a line of %s: %s", kSuppressionFileName, exception.what());
        }
    }
    return hasLines;
}
