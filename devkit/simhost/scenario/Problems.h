// What is wrong with a scenario file: everything, not only what is found first.
#pragma once

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "simhost/scenario/PositionIndex.h"

namespace simhost {

struct Problem {
    Position position;   // in the file; line 0: it was written nowhere
    std::string member;  // as in "steps[0].calls"; may be empty
    std::string words;

    bool operator==(const Problem&) const = default;
};

// Collects the problems of one file. Of what is wrong in several cases alike, one is kept.
class Problems {
  public:
    void Add(Problem problem, const std::string& caseName = "");
    bool Empty() const { return mFound.empty(); }

    // One line each, in the order of the file: "file.json:7:9: steps[0]: unknown key "call"". What is wrong in some of
    // the cases only names them. After `most` lines only says how many there are more.
    std::vector<std::string> Lines(const std::string& file, std::size_t cases, std::size_t most = 20) const;

  private:
    struct Found {
        Problem problem;
        std::set<std::string> cases;
    };

    std::vector<Found> mFound;
};

// A scenario file that cannot be played. `what` is all lines.
class ScenarioError : public std::runtime_error {
  public:
    explicit ScenarioError(std::vector<std::string> lines);

    const std::vector<std::string>& Lines() const { return mLines; }

  private:
    std::vector<std::string> mLines;
};

}  // namespace simhost
