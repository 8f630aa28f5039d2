// One story of a scenario file, as it is played: one case of it, with all defaults filled in. What the keys mean stands
// in docs/scenarios.md.
#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "doubles/host/model/HostModel.h"
#include "simhost/scenario/FilesOfRun.h"
#include "simhost/scenario/Step.h"

namespace simhost {

struct LaunchInfo {
    std::optional<std::string> local;   // contents of the file in local application data
    std::optional<std::string> common;  // the same in common application data
};

// A menu item that is there before the plug-in.
struct MenuItemToMake {
    MenuItem item;
    std::string owner;  // another plug-in's name; empty: the host itself
};

struct Expectations {
    std::optional<std::string> library;                              // the PluginCore's file; empty: none is loaded
    std::optional<std::string> messagingLibrary;                     // the file that the plug-in loaded; empty: none
    std::map<std::string, std::int64_t> violations;                  // amounts by rule
    std::map<std::string, std::vector<std::string>> violationTexts;  // where these are known, by rule
    std::set<std::string> ignored{};                                 // rules that may be broken or not
};

// NOLINTNEXTLINE(bugprone-exception-escape): the JSON's move throws nothing
struct Scenario {
    std::string title;
    std::optional<std::int64_t> timeLimitSeconds{};  // of the whole run
    std::optional<std::int64_t> stepTimeLimitSeconds{};
    std::vector<FileToMake> files;
    std::vector<CopyToMake> copies;
    LaunchInfo launchInfo;
    std::vector<std::string> processes;
    nlohmann::ordered_json answers;
    nlohmann::ordered_json busAnswers;
    std::vector<Document> documents;
    std::map<std::int32_t, std::string> defaultFonts;
    bool emptyHandleForNoMatches = false;
    std::vector<std::string> refusedSuites;
    std::vector<OtherPlugin> otherPlugins;
    std::vector<MenuItemToMake> menuItems;
    std::vector<Step> steps;            // with beginning and end
    bool endIsChecked = true;           // what is left over after the last step
    bool goesOnWhenNotReached = false;  // a step that cannot be played does not end the run
    Expectations expect;
};

}  // namespace simhost
