// The word file: lines against a splitter of its own, words against the reference conversion.
#include <vector>

#include "dialogs/SuppressionWordLines.h"
#include "fuzz/reference/Lines.h"
#include "fuzz/reference/Text.h"
#include "fuzz/Targets.h"

void FuzzWords(std::string_view bytes) {
    const std::vector<std::string> lines = LinesOf(bytes);
    std::vector<std::wstring> expected = {L"there before"};
    for (const std::string& line : lines) {
        if (std::optional<std::wstring> word = ReferenceUtf16(line)) {
            expected.push_back(*std::move(word));
        }
    }

    std::vector<std::wstring> words = {L"there before"};
    const bool hasLines = AppendSuppressionWords(bytes, words);

    Require(hasLines == !lines.empty(), "words: whether there are entries");
    Require(words == expected, "words: the list");
}
