#include "simhost/scenario/Variation.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "doubles/host/Rules.h"
#include "simhost/scenario/HostileAnswers.h"
#include "simhost/scenario/NearestWord.h"

namespace simhost {

namespace {

// How many steps there are up to the one that is named, which is one of them.
std::size_t StepsUntil(const std::vector<Step>& steps, const std::string& until) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(until.data(), until.data() + until.size(), number);
    if (error == std::errc() && end == until.data() + until.size()) {
        if (number < 1 || number > steps.size()) {
            throw std::runtime_error("there is no step " + until + "; the scenario has " +
                                     std::to_string(steps.size()));
        }
        return number;
    }
    std::vector<std::string> known;
    known.reserve(steps.size());
    for (const Step& step : steps) {
        known.push_back(step.say);
    }
    const auto found = std::find(known.begin(), known.end(), until);
    if (found == known.end()) {
        throw std::runtime_error("no step says \"" + until + "\"" + DidYouMean(until, known));
    }
    return static_cast<std::size_t>(found - known.begin()) + 1;
}

// What a scenario announces may come after its last step that is played.
void EndAfter(std::size_t count, Scenario& scenario) {
    scenario.steps.resize(count);
    scenario.endIsChecked = false;
    for (const auto& [rule, amount] : scenario.expect.violations) {
        scenario.expect.ignored.insert(rule);
    }
    for (const auto& [rule, texts] : scenario.expect.violationTexts) {
        scenario.expect.ignored.insert(rule);
    }
}

void AnswerFrom(std::uint64_t seed, Scenario& scenario) {
    scenario.answers = HostileAnswers(seed);
    scenario.goesOnWhenNotReached = true;
    for (Step& step : scenario.steps) {
        step.expect.calls = std::nullopt;
        step.expect.busCalls = std::nullopt;
        if (auto* const random = std::get_if<SendRandomMessages>(&step.action)) {
            random->seed = seed;
        }
        if (auto* const replaced = std::get_if<ReplaceAnswers>(&step.action)) {
            replaced->answers = HostileAnswers(++seed);
        }
    }
    // With other answers something else happens. And a PluginCore has to keep its contract, which this one does not.
    for (const auto& [rule, name] : AllRules()) {
        if (IsAboutExpectations(rule) || rule == Rule::kContract) {
            scenario.expect.ignored.insert(name);
        }
    }
}

}  // namespace

std::vector<std::string> AsArguments(const Variation& variation) {
    std::vector<std::string> arguments;
    if (!variation.until.empty()) {
        arguments.insert(arguments.end(), {"--until", variation.until});
    }
    if (variation.seed) {
        arguments.insert(arguments.end(), {"--seed", std::to_string(*variation.seed)});
    }
    return arguments;
}

void Vary(Scenario& scenario, const Variation& variation) {
    if (variation.seed) {
        AnswerFrom(*variation.seed, scenario);
    }
    if (!variation.until.empty()) {
        EndAfter(StepsUntil(scenario.steps, variation.until), scenario);
    }
}

}  // namespace simhost
