#include "simhost/scenario/NearestWord.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace simhost {

namespace {

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

// How many letters have to be added, removed, replaced or swapped with their neighbour.
std::size_t Distance(const std::string& a, const std::string& b) {
    std::vector<std::vector<std::size_t>> steps(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                steps[i][j] = i + j;
                continue;
            }
            const std::size_t replaced = steps[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, replaced});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
            }
        }
    }
    return steps[a.size()][b.size()];
}

}  // namespace

std::string NearestWord(std::string_view written, const std::vector<std::string>& known) {
    // Longer ones are no slips of the finger, and would take long to compare.
    constexpr std::size_t kLongest = 200;
    if (written.empty() || written.size() > kLongest) {
        return {};
    }
    std::string nearest;
    // One slip in three letters; of a shorter word only the case may differ.
    std::size_t least = written.size() / 3 + 1;
    const std::string lower = Lower(written);
    for (const std::string& word : known) {
        const std::size_t distance = word.size() > kLongest ? least : Distance(lower, Lower(word));
        if (distance < least) {
            least = distance;
            nearest = word;
        }
    }
    return nearest;
}

std::string DidYouMean(std::string_view written, const std::vector<std::string>& known) {
    const std::string nearest = NearestWord(written, known);
    return nearest.empty() ? "" : "; did you mean \"" + nearest + "\"?";
}

}  // namespace simhost
