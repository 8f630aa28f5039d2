#include "simhost/checks/CallDifference.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "simhost/scenario/CallDefaults.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// The digits beside a text need not be expected: a text that holds no invalid bytes says the same.
bool SameArguments(const Json& expected, const Json& actual) {
    for (const auto& [name, value] : actual.items()) {
        const auto found = expected.find(name);
        if (found == expected.end() ? !name.ends_with("_hex") : *found != value) {
            return false;
        }
    }
    return std::all_of(expected.items().begin(), expected.items().end(),
                       [&](const auto& item) { return actual.contains(item.key()); });
}

std::string OneLine(const PluginCoreCall& call) {
    return call.entry + " " + call.arguments.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string FirstDifference(const std::vector<PluginCoreCall>& expected, std::span<const PluginCoreCall> calls) {
    const std::size_t count = std::max(expected.size(), calls.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::string number = "call " + std::to_string(i + 1) + ": ";
        if (i >= expected.size()) {
            return number + "nothing was expected, but came " + OneLine(calls[i]);
        }
        if (i >= calls.size()) {
            return number + "expected " + OneLine(expected[i]) + ", but nothing came";
        }
        if (!IsCall(expected[i], calls[i])) {
            return number + "expected " + OneLine(expected[i]) + ", but came " + OneLine(calls[i]);
        }
    }
    return {};
}

}  // namespace

PluginCoreCall ExpectedCall(const Json& expected) {
    const Json full = FullCall(expected);
    return {full.begin().key(), full.begin().value()};
}

std::vector<PluginCoreCall> ExpectedCalls(const Json& expected) {
    std::vector<PluginCoreCall> calls;
    for (const Json& call : expected) {
        calls.push_back(ExpectedCall(call));
    }
    return calls;
}

bool IsCall(const PluginCoreCall& expected, const PluginCoreCall& call) {
    return expected.entry == call.entry && SameArguments(expected.arguments, call.arguments);
}

std::string DifferenceOf(const Json& expected, const std::vector<PluginCoreCall>& calls) {
    return FirstDifference(ExpectedCalls(expected), calls);
}

std::string DifferenceOfTicks(const Json& each, std::int64_t ticks, const std::vector<PluginCoreCall>& calls,
                              std::int64_t seconds) {
    constexpr std::int64_t kSecondsBetweenQuestions = 10;
    const PluginCoreCall question = ExpectedCall("PluginIsEnabled");
    const std::vector<PluginCoreCall> callsOfEach = ExpectedCalls(each);
    std::int64_t questionsLeft = seconds / kSecondsBetweenQuestions + 1;
    auto next = calls.begin();
    for (std::int64_t tick = 1; tick <= ticks; ++tick) {
        if (next != calls.end() && questionsLeft > 0 && IsCall(question, *next)) {
            --questionsLeft;
            ++next;
        }
        const auto end = next + std::min<std::ptrdiff_t>(std::ssize(callsOfEach), calls.end() - next);
        const std::string difference = FirstDifference(callsOfEach, {next, end});
        if (!difference.empty()) {
            return "tick " + std::to_string(tick) + ": " + difference;
        }
        next = end;
    }
    return next == calls.end() ? "" : "after the last tick came " + OneLine(*next);
}

}  // namespace simhost
