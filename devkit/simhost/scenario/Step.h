// A step of a scenario: what happens, and what it must bring about. What the keys mean stands in docs/scenarios.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "simhost/verbs/Action.h"

namespace simhost {

struct Verb;

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

// What a step brings about that reaches the plug-in. A nested step has nothing but the answer: the rest belongs to the
// step around it.
struct StepExpectations {
    // Nothing is compared: whatever comes is only shown, and boxes are answered by a person.
    bool anything = false;
    std::int32_t answer = 0;
    // Nothing: any calls.
    std::optional<nlohmann::ordered_json> calls = nlohmann::ordered_json::array();
    std::optional<nlohmann::ordered_json> busCalls = nlohmann::ordered_json::array();
    std::vector<PanelEvent> panelEvents;
    std::optional<std::vector<std::string>> loads;  // files of the messaging library that the plug-in loads
    std::vector<BoxToExpect> boxes;
    std::map<std::string, std::int64_t> hostCalls;
    std::optional<std::int64_t> foregroundSwitches;
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

struct Step {
    std::string place;     // in the file, for messages
    std::size_t line = 0;  // in the file; 0: it is a default
    std::string say;       // for the transcript; may be empty
    std::string inShort;   // the verb and what it is about, for steps that say nothing
    const Verb* verb = nullptr;
    Action action;
    StepExpectations expect;
    std::vector<FailureToScript> failures;
    std::vector<NestedStep> nested;
};

}  // namespace simhost
