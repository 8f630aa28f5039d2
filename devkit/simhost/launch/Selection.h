// Which cases of which scenarios are played: what the command line names, checked whole before anything is played.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "simhost/scenario/ScenarioFile.h"

namespace simhost {

struct SelectedCase {
    std::shared_ptr<const ScenarioFile> file;
    std::string name;  // empty: the file has no cases
};

struct Unplayable {
    std::filesystem::path file;
    std::string caseName;            // empty: the whole file, or it has no cases
    std::vector<std::string> lines;  // why

    // "file.json/case", as reports name it.
    std::string Place() const;
};

struct Selection {
    std::vector<SelectedCase> cases;
    std::vector<Unplayable> unplayable;
};

// Files, folders and patterns, each file once; a pattern may leave ".json" out. Throws std::runtime_error when one of
// them names nothing.
std::vector<std::filesystem::path> ScenariosNamed(const std::vector<std::filesystem::path>& names);

// The cases of the files whose names match one of the patterns; all when there are none. Throws std::runtime_error when
// a pattern matches nothing.
Selection SelectCases(const std::vector<std::filesystem::path>& files, const std::vector<std::string>& casePatterns);

}  // namespace simhost
