// A scenario as it is read from its file. What the keys mean stands in docs/devkit.md.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "doubles/host/model/HostModel.h"

namespace simhost {

// All paths are relative to the work folder unless they are absolute.
struct FileToMake {
    std::string path;
    std::string text;
    std::optional<std::int64_t> modified;  // seconds since 1970
};

struct CopyToMake {
    std::string what;  // file name beside simhost.exe
    std::string to;
};

struct FileToMove {
    std::string from;
    std::string to;
};

struct LaunchInfo {
    std::optional<std::string> local;   // contents of the file in local application data
    std::optional<std::string> common;  // the same in common application data
};

struct FailureToScript {
    std::string operation;
    std::int64_t nth = 1;
    std::int32_t code = 0;
};

struct Step;

struct NestedStep {
    std::string operation;
    std::int64_t nth = 1;
    std::vector<Step> step;  // exactly one
};

enum class DialogKind { kStandard, kStandardByName, kOtherClass };
enum class DialogEnd { kUntouched, kClickedOk, kPressedEnter };

struct DialogToShow {
    std::string title;
    DialogKind kind = DialogKind::kStandard;
    bool okButton = true;
    std::string createdBefore{};  // title of a dialog that was created before and is not shown yet; may be empty
    DialogEnd end = DialogEnd::kUntouched;
};

// The item that a menu message is about.
struct MenuTarget {
    std::optional<std::string> text;  // without one: the null handle
    std::int64_t nth = 1;             // of the items with that text
};

struct TicksToSend {
    std::int64_t times = 1;
    std::int64_t sent = 1;  // how many messages that makes
};

struct BoxToExpect {
    std::string caption;
    std::string text;
    std::uint32_t style = 0;
};

// What the panel is told.
struct PanelEvent {
    std::optional<std::string> type;  // nothing: a null pointer
    std::int32_t scope = 0;
    std::optional<std::string> application;
    std::optional<std::string> extension;
    std::optional<std::string> data;

    bool operator==(const PanelEvent&) const = default;
};

struct DocumentChange {
    std::optional<std::string> path;
    std::optional<bool> modified;
    std::optional<std::vector<TextFrame>> frames;
    std::optional<std::vector<std::string>> placed;
};

struct Step {
    std::string place;   // in the file, for messages
    std::string action;  // the value of "do"
    std::string say;     // for the transcript; may be empty
    std::string document;
    std::string caller;
    std::string selector;
    std::string notifierType;
    bool withBasicSuite = true;
    bool documentGone = true;  // closing: whether the host has forgotten the document when it tells
    bool fileWritten = true;   // saving: whether the save really happened
    std::int32_t answer = 0;
    nlohmann::ordered_json calls = nlohmann::ordered_json::array();
    nlohmann::ordered_json busCalls = nlohmann::ordered_json::array();
    std::vector<PanelEvent> panelEvents;
    std::optional<std::vector<std::string>> loads;  // files of the messaging library that the plug-in loads
    std::vector<BoxToExpect> boxes;
    std::vector<FailureToScript> failures;
    std::vector<NestedStep> nested;
    std::map<std::string, std::int64_t> hostCalls;
    std::optional<std::int64_t> foregroundSwitches;
    DocumentChange change;
    DialogToShow dialog;
    MenuTarget menu;
    TicksToSend ticks;
    std::optional<std::string> path;  // of the file that is checked; without one: an empty path object
    std::int64_t seconds = 0;         // to wait
    // What the plug-in must have left in the host, in the form that PresentState gives.
    nlohmann::ordered_json state = nlohmann::ordered_json::object();
    std::vector<FileToMake> files;
    FileToMove move;
    nlohmann::ordered_json answers = nlohmann::ordered_json::object();
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
};

struct Scenario {
    std::string title;
    std::vector<FileToMake> files;
    std::vector<CopyToMake> copies;
    LaunchInfo launchInfo;
    std::vector<std::string> processes;
    nlohmann::ordered_json answers = nlohmann::ordered_json::object();
    nlohmann::ordered_json busAnswers = nlohmann::ordered_json::object();
    std::vector<Document> documents;
    std::map<std::int32_t, std::string> defaultFonts;
    bool emptyHandleForNoMatches = false;
    std::vector<std::string> refusedSuites;
    std::vector<OtherPlugin> otherPlugins;
    std::vector<MenuItemToMake> menuItems;
    std::vector<Step> steps;
    Expectations expect;
};

}  // namespace simhost
