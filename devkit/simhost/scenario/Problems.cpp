#include "simhost/scenario/Problems.h"

#include <algorithm>
#include <utility>

namespace simhost {

namespace {

std::string Joined(const std::vector<std::string>& parts, const char* between) {
    std::string all;
    for (const std::string& part : parts) {
        all += (all.empty() ? "" : between) + part;
    }
    return all;
}

std::string LineOf(const Problem& problem, const std::string& file) {
    const bool known = problem.position.line != 0;
    return file +
           (known ? ":" + std::to_string(problem.position.line) + ":" + std::to_string(problem.position.column) : "") +
           ": " + (problem.member.empty() ? "" : problem.member + ": ") + problem.words;
}

}  // namespace

void Problems::Add(Problem problem, const std::string& caseName) {
    const auto same =
        std::find_if(mFound.begin(), mFound.end(), [&](const Found& found) { return found.problem == problem; });
    if (same == mFound.end()) {
        mFound.push_back({std::move(problem), {caseName}});
    } else {
        same->cases.insert(caseName);
    }
}

std::vector<std::string> Problems::Lines(const std::string& file, std::size_t cases, std::size_t most) const {
    std::vector<Found> sorted = mFound;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Found& a, const Found& b) { return a.problem.position < b.problem.position; });
    std::vector<std::string> lines;
    for (const Found& found : sorted) {
        if (lines.size() == most) {
            lines.push_back(file + ": and " + std::to_string(sorted.size() - most) + " more");
            break;
        }
        const bool inSome =
            !found.cases.contains("") && found.cases.size() < cases && !found.problem.member.starts_with("cases.");
        lines.push_back(LineOf(found.problem, file) +
                        (inSome ? " (case " + Joined({found.cases.begin(), found.cases.end()}, ", ") + ")" : ""));
    }
    return lines;
}

ScenarioError::ScenarioError(std::vector<std::string> lines)
    : std::runtime_error(Joined(lines, "\n")), mLines(std::move(lines)) {}

}  // namespace simhost
