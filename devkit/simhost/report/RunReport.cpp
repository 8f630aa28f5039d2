#include "simhost/report/RunReport.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "doubles/host/Host.h"
#include "simhost/report/CallJson.h"
#include "simhost/report/CallLines.h"
#include "simhost/verbs/VerbTable.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kMessageIndent = 2;
constexpr int kCallIndent = 6;

const char* NameOf(Library library) { return library == Library::kPluginCore ? "plugincore" : "messaging"; }
const char* KeyOf(Library library) { return library == Library::kPluginCore ? "calls" : "bus_calls"; }

bool IsCallOfPluginCore(const std::pair<std::string, Json>& event) {
    return event.first == "call" && event.second.value("library", "") == NameOf(Library::kPluginCore);
}

std::string HeadingOf(std::size_t number, const Step& step) {
    return std::to_string(number) + ". " + (step.say.empty() ? step.inShort : step.say);
}

}  // namespace

RunReport::RunReport(const Scenario& scenario, Transcript transcript, const std::filesystem::path& events)
    : mScenario(scenario), mTranscript(std::move(transcript)), mEvents(events) {}

void RunReport::BeginRun(const std::string& name) {
    mTranscript.Title(mScenario.title);
    Write("run_begin", {{"run", name}, {"title", mScenario.title}, {"steps", mScenario.steps.size()}});
}

void RunReport::BeginStep(std::size_t number, const Step& step) {
    mPlace = step.place;
    Json members = {{"step", number}, {"place", step.place}, {"line", step.line}, {"do", step.inShort}};
    if (!step.say.empty()) {
        members["say"] = step.say;
    }
    Open(HeadingOf(number, step), std::move(members));
}

void RunReport::BeginEnd() {
    mPlace.clear();
    Open("After the last step", {{"step", nullptr}});
}

void RunReport::Write(const std::string& event, Json members) {
    if (mHeldBack) {
        mHeldBack->emplace_back(event, std::move(members));
    } else {
        mEvents.Write(event, members);
    }
}

void RunReport::Open(const std::string& heading, Json members) {
    EndStep();
    mStep = std::move(members);
    mPassed = true;
    mObserved = Json::object();
    mBegan = std::chrono::steady_clock::now();
    mTranscript.BeginStep(heading);
    Write("step_begin", mStep);
}

void RunReport::EndStep() {
    if (mStep.is_null()) {
        return;
    }
    TellViolations();
    const auto time = std::chrono::steady_clock::now() - mBegan;
    const Json members = {{"step", mStep["step"]},
                          {"passed", mPassed},
                          {"ms", std::chrono::duration_cast<std::chrono::milliseconds>(time).count()},
                          {"observed", mObserved}};
    mTranscript.EndStep(mPassed);
    Write("step_end", members);
    mStep = nullptr;
}

bool RunReport::IsExpected(const std::string& rule, const Violation& violation) const {
    const Expectations& expect = mScenario.expect;
    const auto told = mToldByRule.find(rule);
    const Told before = told == mToldByRule.end() ? Told() : told->second;
    const auto amount = expect.violations.find(rule);
    const auto texts = expect.violationTexts.find(rule);
    return expect.ignored.contains(rule) ||
           (amount != expect.violations.end() && before.amount + violation.amount <= amount->second) ||
           (texts != expect.violationTexts.end() && before.times < texts->second.size() &&
            texts->second[before.times] == violation.text);
}

void RunReport::TellViolations() {
    const std::vector<Violation>& violations = Host().rules.Violations();
    for (; mTold < violations.size(); ++mTold) {
        const Violation& violation = violations[mTold];
        const std::string rule = simhost::NameOf(violation.rule);
        const bool expected = IsExpected(rule, violation);
        ++mToldByRule[rule].times;
        mToldByRule[rule].amount += violation.amount;
        mPassed = mPassed && expected;
        std::string text = violation.text;
        if (!mPlace.empty() && text.starts_with(mPlace + ": ")) {
            text.erase(0, mPlace.size() + 2);
        }
        const auto explained = mExplained.find(violation.text);
        const bool inLines = explained != mExplained.end() && !explained->second.empty();
        const Tone tone = expected ? Tone::kWarning : Tone::kBad;
        mTranscript.Line(kMessageIndent,
                         (expected ? "as announced, " : "! ") + rule + ":" + (inLines ? "" : " " + text), tone);
        for (std::size_t i = 0; inLines && i < explained->second.size(); ++i) {
            mTranscript.Line(kMessageIndent + 4, explained->second[i], tone);
        }
        Write("complaint", {{"step", mStep["step"]},
                            {"rule", rule},
                            {"text", violation.text},
                            {"amount", violation.amount},
                            {"expected", expected}});
    }
}

void RunReport::Message(const std::string& text, std::int32_t answer) {
    mTranscript.Line(kMessageIndent, text + " -> " + std::to_string(answer));
    Write("message", {{"text", text}, {"answer", answer}});
    Observed("answer", answer);
}

void RunReport::NestedInto(const std::string& operation) {
    mTranscript.Line(kMessageIndent, "inside " + operation + ":");
    Write("nested", {{"during", operation}});
}

void RunReport::Calls(Library library, const std::vector<PluginCoreCall>& calls, bool shown) {
    if (!mTellsCalls) {
        return;
    }
    Json& observed = mObserved[KeyOf(library)];
    observed = observed.is_array() ? observed : Json::array();
    for (const PluginCoreCall& call : calls) {
        if (shown) {
            for (const std::string& line :
                 LinesOf(call, [this](const std::string& text) { return mTranscript.Shorten(text); })) {
                mTranscript.Line(kCallIndent, line);
            }
        }
        Json members = {{"library", NameOf(library)}};
        members.update(AsJson(call));
        Write("call", members);
        observed.push_back({{call.entry, call.arguments}});
    }
}

void RunReport::Line(const std::string& text, int indent) {
    mTranscript.Line(indent, text);
    Write("note", {{"text", text}});
}

bool RunReport::TellIfNew(const std::string& heading, std::set<std::vector<std::string>>& known,
                          const std::function<void()>& action) {
    mHeldBack.emplace();
    Json observed = std::exchange(mObserved, Json::object());
    mTranscript.HoldBack();
    std::exception_ptr error;
    try {
        action();
    } catch (...) {
        error = std::current_exception();
    }
    const std::vector<std::string> lines = mTranscript.TakeHeldBack();
    const auto events = *std::exchange(mHeldBack, std::nullopt);
    std::swap(mObserved, observed);
    const bool isTold = known.insert(lines).second || error != nullptr;
    if (isTold) {
        mTranscript.Step(heading);
        for (const std::string& line : lines) {
            mTranscript.Line(0, line);
        }
        for (const auto& [event, members] : events) {
            Write(event, members);
        }
        AddObserved(observed);
    } else {
        // Calls that were lost are found by the number of those that were told.
        Write("repeated", {{"calls", std::count_if(events.begin(), events.end(), &IsCallOfPluginCore)}});
    }
    if (error != nullptr) {
        std::rethrow_exception(error);
    }
    return isTold;
}

// Calls join those before, anything else takes its place.
void RunReport::AddObserved(const Json& observed) {
    for (const auto& [key, value] : observed.items()) {
        Json& present = mObserved[key];
        if (present.is_array() && value.is_array()) {
            present.insert(present.end(), value.begin(), value.end());
        } else {
            present = value;
        }
    }
}

void RunReport::Observed(const std::string& key, Json value) { mObserved[key] = std::move(value); }

}  // namespace simhost
