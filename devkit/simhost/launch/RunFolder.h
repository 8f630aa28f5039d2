// The folder in which a run takes place, and what lies where in it:
//
//   host/simhost.exe    the host's program; libraries of bare name are found beside it
//   host/Plug-ins/      the plug-in
//   answers.json        what the double of the PluginCore answers
//   calls.jsonl         the calls of the PluginCore, written as they happen
//   bus-calls.jsonl     what the double of the messaging library recorded
//   bus-answers.json    what it answers
//   violations.jsonl    the rules that were broken, written as it happens
//   random-messages.txt the random messages, written as they are sent
#pragma once

#include <filesystem>
#include <string>

#include "simhost/scenario/Scenario.h"
#include "simhost/scenario/Values.h"

namespace simhost {

// The name under which scenarios copy the PluginCore; a library of one's own takes its place.
constexpr const char* kPluginCoreName = "PluginCoreX64.dll";

class RunFolder {
  public:
    // Of a folder that exists, or that LayOut will make. Absolute.
    RunFolder(std::filesystem::path root, const std::filesystem::path& pluginFileName);

    const std::filesystem::path& Root() const { return mRoot; }
    std::filesystem::path Program() const { return mRoot / L"host" / L"simhost.exe"; }
    std::filesystem::path Plugin() const { return mRoot / L"host" / L"Plug-ins" / mPluginName; }
    std::filesystem::path Answers() const { return mRoot / L"answers.json"; }
    std::filesystem::path BusCalls() const { return mRoot / L"bus-calls.jsonl"; }
    std::filesystem::path BusAnswers() const { return mRoot / L"bus-answers.json"; }
    std::filesystem::path Calls() const { return mRoot / L"calls.jsonl"; }
    std::filesystem::path Violations() const { return mRoot / L"violations.jsonl"; }
    std::filesystem::path RandomMessages() const { return mRoot / L"random-messages.txt"; }
    // A path of a scenario.
    std::filesystem::path At(const std::string& path) const;

    Placeholders PlaceholdersForScenarios() const;

    // Takes the folder for the run (see OwnFolder.h) and makes it anew, with everything that the scenario lays out in
    // it. `kit` is the folder of the libraries that are copied. Throws std::runtime_error.
    // `pluginCore` is copied where the scenario wants PluginCoreX64.dll; empty for the kit's double.
    void LayOut(const Scenario& scenario, const std::filesystem::path& plugin, const std::filesystem::path& kit,
                const std::filesystem::path& pluginCore) const;
    // The scenario's own part of that: copies of libraries, and files, in the place of what lies there.
    void LayOutFiles(const Scenario& scenario, const std::filesystem::path& kit,
                     const std::filesystem::path& pluginCore) const;

    void WriteFile(const FileToMake& file) const;
    void Move(const FileToMove& move) const;
    void WriteAnswers(const nlohmann::ordered_json& answers) const;

  private:
    std::filesystem::path mRoot;
    std::filesystem::path mPluginName;
};

}  // namespace simhost
