// A scenario as it is read from its file. What the keys mean stands in docs/devkit.md.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "simulated_host/HostModel.h"

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

struct BoxToExpect {
    std::string caption;
    std::string text;
    std::uint32_t style = 0;
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
    std::vector<BoxToExpect> boxes;
    std::vector<FailureToScript> failures;
    std::vector<NestedStep> nested;
    std::map<std::string, std::int64_t> hostCalls;
    std::optional<std::int64_t> foregroundSwitches;
    DocumentChange change;
    DialogToShow dialog;
    std::vector<FileToMake> files;
    nlohmann::ordered_json answers = nlohmann::ordered_json::object();
};

struct Expectations {
    std::optional<std::string> library;                              // the PluginCore's file; empty: none is loaded
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
    std::vector<Document> documents;
    std::map<std::int32_t, std::string> defaultFonts;
    bool emptyHandleForNoMatches = false;
    std::vector<std::string> refusedSuites;
    std::vector<Step> steps;
    Expectations expect;
};

// Whether the step sends a message to the plug-in.
bool SendsMessage(const Step& step);

}  // namespace simhost
