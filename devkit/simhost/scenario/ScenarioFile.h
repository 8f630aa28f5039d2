// A scenario file: one story, or several cases of one.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simhost/scenario/Scenario.h"
#include "simhost/scenario/Values.h"

namespace simhost {

class ScenarioFile {
  public:
    // Throws ScenarioError, which names file and place, for what is no JSON and for cases that cannot be.
    explicit ScenarioFile(std::filesystem::path file);

    const std::filesystem::path& Path() const { return mPath; }
    // In the order of the file. One empty name when the file has no cases.
    const std::vector<std::string>& Cases() const { return mCases; }
    // As reports call a case: "file.json", or "file.json/case".
    std::string PlaceOf(const std::string& caseName) const;

    // The file name, beside simhost.exe, of the plug-in that the case is played to.
    std::string PluginOf(const std::string& caseName) const;

    // The story with its values and all defaults written into it. Throws ScenarioError for whatever is not understood.
    nlohmann::ordered_json WrittenOut(const std::string& caseName, const Placeholders& placeholders) const;
    Scenario Read(const std::string& caseName, const Placeholders& placeholders) const;

  private:
    nlohmann::ordered_json StoryOf(const std::string& caseName) const;

    std::filesystem::path mPath;
    nlohmann::ordered_json mJson;
    std::vector<std::string> mCases;
};

}  // namespace simhost
