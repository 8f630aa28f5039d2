// What a run tells, to people and to machines, while it takes place: all that happens in it goes through here.
//
// Thread: main.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "doubles/host/Rules.h"
#include "simhost/checks/PluginCoreCalls.h"
#include "simhost/report/EventLog.h"
#include "simhost/report/Transcript.h"
#include "simhost/scenario/CallTable.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

class RunReport {
  public:
    using Json = nlohmann::ordered_json;

    // Of one run; lives no longer than the scenario.
    RunReport(const Scenario& scenario, Transcript transcript, const std::filesystem::path& events);

    void BeginRun(const std::string& name);
    // `number` counts all steps of the run, from 1.
    void BeginStep(std::size_t number, const Step& step);
    // What is checked once all steps are done.
    void BeginEnd();
    // Tells which rules were broken since the step began, and so whether it passed. Harmless when none is open.
    void EndStep();

    void Message(const std::string& text, std::int32_t answer);
    void NestedInto(const std::string& operation);
    void Calls(Library library, const std::vector<PluginCoreCall>& calls, bool shown = true);
    // From now on nobody is told of calls, which may be tens of thousands.
    void LeaveOutCalls() { mTellsCalls = false; }
    bool TellsCalls() const { return mTellsCalls; }
    // Anything else that is worth a line.
    void Line(const std::string& text, int indent = 6);

    // What a step brought about, as it would be written under that key in a scenario.
    void Observed(const std::string& key, Json value);
    // Does `action`, whose lines for people are told below `heading`, as all else that it brings about, unless it has
    // brought about the same before: then machines are told how many calls there were. Lines that are told are noted in
    // `known`. Answers whether they were. Throws what the action throws; then all is told.
    bool TellIfNew(const std::string& heading, std::set<std::vector<std::string>>& known,
                   const std::function<void()>& action);
    Transcript& People() { return mTranscript; }
    // What to print instead of a broken rule's text.
    void Explain(const std::string& text, std::vector<std::string> lines) { mExplained[text] = std::move(lines); }

  private:
    void Write(const std::string& event, Json members);
    void Open(const std::string& heading, Json members);
    void AddObserved(const Json& observed);
    void TellViolations();
    // Whether the scenario announces it, and not only others of the rule that were told already.
    bool IsExpected(const std::string& rule, const Violation& violation) const;

    const Scenario& mScenario;
    Transcript mTranscript;
    EventLog mEvents;
    Json mStep;             // what tells the open step; null when none is open
    std::string mPlace;     // of the open step
    std::size_t mTold = 0;  // how many broken rules were told
    struct Told {
        std::size_t times = 0;
        std::int64_t amount = 0;
    };
    std::map<std::string, Told> mToldByRule;
    bool mTellsCalls = true;
    bool mPassed = true;  // the open step, so far
    Json mObserved;
    std::optional<std::vector<std::pair<std::string, Json>>> mHeldBack;  // events that may not be told
    std::map<std::string, std::vector<std::string>> mExplained;
    std::chrono::steady_clock::time_point mBegan;
};

}  // namespace simhost
