// A scenario file: one story, or several cases of one.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simhost/scenario/JsonText.h"
#include "simhost/scenario/Scenario.h"
#include "simhost/scenario/Values.h"

namespace simhost {

class ScenarioFile {
  public:
    // Throws ScenarioError for what cannot be read or is no JSON.
    explicit ScenarioFile(std::filesystem::path file);

    const std::filesystem::path& Path() const { return mPath; }
    // In the order of the file. One empty name when the file has no cases.
    const std::vector<std::string>& Cases() const { return mCases; }
    // As reports call a case: "file.json", or "file.json/case".
    std::string PlaceOf(const std::string& caseName) const;

    // As it was written, which may be with placeholders.
    std::string TitleOf(const std::string& caseName) const;

    // Which of "begin" and "end" the case leaves to the default.
    std::vector<std::string> UsualPartsOf(const std::string& caseName) const;

    // Reads all cases. Throws ScenarioError with everything that is wrong in any of them. `kit` is the folder of the
    // files that scenarios copy; empty: whether they are there does not matter.
    void Check(const std::filesystem::path& kit) const;

    // The file name, beside simhost.exe, of the plug-in that the case is played to.
    std::string PluginOf(const std::string& caseName) const;

    // The story with its values and all defaults written into it. These throw ScenarioError with everything that is
    // wrong in the case, and when there is no such case.
    nlohmann::ordered_json WrittenOut(const std::string& caseName, const Placeholders& placeholders) const;
    Scenario Read(const std::string& caseName, const Placeholders& placeholders) const;

  private:
    struct Reading {
        nlohmann::ordered_json story;
        Scenario scenario;
    };

    Problems ProblemsOfFile() const;
    Reading ReadStory(const std::string& caseName, const Placeholders& placeholders, Problems& problems,
                      const std::filesystem::path& kit = {}) const;
    Reading ReadOrThrow(const std::string& caseName, const Placeholders& placeholders) const;
    nlohmann::ordered_json StoryOf(const std::string& caseName, Origins& origins) const;
    void ThrowIfAny(const Problems& problems) const;

    std::filesystem::path mPath;
    JsonText mText;
    std::vector<std::string> mCases;
};

}  // namespace simhost
