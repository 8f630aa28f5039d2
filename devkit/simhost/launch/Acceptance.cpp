#include "simhost/launch/Acceptance.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/report/ResultRecord.h"
#include "simhost/scenario/CallTable.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// The key under which a step says what the rule is about.
struct RuleRow {
    std::string_view rule;
    const char* key;
};

constexpr RuleRow kRules[] = {
    {"reply", "answer"},
    {"dialog", "expect"},
    {"calls", "calls"},
    {"bus-calls", "bus_calls"},
    {"panel-events", "panel_events"},
    {"boxes", "boxes"},
    {"foreground", "foreground_switches"},
    {"messaging-library", "loads"},
    {"host-calls", "host_calls"},
    {"ticks", "sent"},
    {"random-messages", "at_least"},
};
// In the place of a step that was played inside another.
constexpr const char* kNestedPlace = ".nested[";
constexpr const char* kKindsOfState[] = {"menu", "timers", "file_formats", "messages"};

bool IsKindOfState(const std::string& key) {
    return std::find(std::begin(kKindsOfState), std::end(kKindsOfState), key) != std::end(kKindsOfState);
}

std::vector<std::string> KeysOf(const std::string& rule) {
    if (rule == "state") {
        return {std::begin(kKindsOfState), std::end(kKindsOfState)};
    }
    const auto* const found =
        std::find_if(std::begin(kRules), std::end(kRules), [&](const RuleRow& row) { return row.rule == rule; });
    return found == std::end(kRules) ? std::vector<std::string>() : std::vector<std::string>{found->key};
}

// A text that is the compact text of a JSON value becomes that value, which says the same and can be read.
Json AsReadable(const Json& text) {
    if (text.is_string()) {
        Json value = Json::parse(text.get<std::string>(), nullptr, false);
        if (value.is_structured() && value.dump() == text.get<std::string>()) {
            return value;
        }
    }
    return text;
}

// Without the arguments that need not be written.
Json ShortCall(const Json& call) {
    if (!call.is_object() || call.size() != 1) {
        return call;
    }
    const std::string& entry = call.begin().key();
    const CallRow* const row = FindCall(entry);
    const Json always = row == nullptr ? Json::object() : Json::parse(row->always);
    Json arguments = Json::object();
    for (const auto& [name, value] : call.begin().value().items()) {
        // The menus default to what GetMenus answers, which another run may not.
        const bool isDefault = always.contains(name) && always[name] == value && name != "json";
        if (!isDefault && !name.ends_with("_hex")) {
            arguments[name] = AsReadable(value);
        }
    }
    return arguments.empty() ? Json(entry) : Json{{entry, arguments}};
}

void ShortenCalls(Json& steps) {
    for (Json& step : steps) {
        for (const char* const key : {"calls", "bus_calls"}) {
            if (!step.contains(key) || !step[key].is_array()) {
                continue;
            }
            for (Json& call : step[key]) {
                call = ShortCall(call);
            }
        }
    }
}

void MakeAnswersReadable(Json& holder, const char* key) {
    for (Json& list : holder.contains(key) ? holder[key] : holder["nothing"]) {
        for (Json& answer : list) {
            if (answer.contains("text")) {
                answer["text"] = AsReadable(answer["text"]);
            }
        }
    }
    holder.erase("nothing");
}

std::string WithPlaceholders(std::string text, const Placeholders& placeholders) {
    for (const char* const name : {"plugin", "work"}) {
        const std::string& meaning = placeholders.at(name);
        text = ReplaceAll(std::move(text), AsJsonText(meaning), "${" + std::string(name) + ":json}");
        text = ReplaceAll(std::move(text), meaning, "${" + std::string(name) + "}");
    }
    return text;
}

Json WithPlaceholders(const Json& value, const Placeholders& placeholders) {
    if (value.is_string()) {
        return WithPlaceholders(value.get<std::string>(), placeholders);
    }
    Json replaced = value;
    if (value.is_structured()) {
        for (auto& [key, member] : replaced.items()) {
            member = WithPlaceholders(Json(member), placeholders);
        }
    }
    return replaced;
}

class Acceptance {
  public:
    explicit Acceptance(Json& story) {
        for (const char* const part : {"begin", "steps", "end"}) {
            for (Json& step : story[part]) {
                mSteps.push_back({&step, part});
            }
        }
    }

    void Take(const std::vector<Json>& events) {
        std::vector<Complaint> complaints;
        for (const Json& event : events) {
            const std::string kind = event.value("event", std::string());
            if (kind == "complaint") {
                complaints.push_back({event.value("rule", std::string()), event.value("text", std::string()),
                                      event.value("expected", false)});
            } else if (kind == "step_end" && event["step"].is_number()) {
                TakeStep(event["step"].get<std::size_t>(), event["observed"], std::exchange(complaints, {}));
            }
        }
    }

    // Whether a step says now what the run complained about, or the scenario announces it.
    bool IsAnswered(const std::string& complaint) const {
        return std::find(mAnswered.begin(), mAnswered.end(), complaint) != mAnswered.end();
    }

    // How many violations of the rule come as announced, even with what the steps say now.
    std::size_t AnnouncedOf(const std::string& rule) const {
        const auto found = mAnnounced.find(rule);
        return found == mAnnounced.end() ? 0 : found->second;
    }

    std::vector<std::string> changed;  // "begin", "steps", "end"
    std::vector<std::string> refused;  // what no step can say

  private:
    struct Complaint {
        std::string rule;
        std::string text;
        bool isAnnounced;
    };
    struct Row {
        Json* step;
        std::string part;
    };

    void TakeStep(std::size_t number, const Json& observed, const std::vector<Complaint>& complaints) {
        if (number == 0 || number > mSteps.size()) {
            return;
        }
        Row& row = mSteps[number - 1];
        for (const Complaint& complaint : complaints) {
            const bool isAnswered = complaint.isAnnounced || Answers(complaint, observed, row);
            (isAnswered ? mAnswered : refused).push_back(complaint.rule + ": " + complaint.text);
            // A step that says now what it observed no longer breaks the rule as announced.
            const bool isSaidNow = std::any_of(complaints.begin(), complaints.end(), [&](const Complaint& other) {
                return other.rule == complaint.rule && !other.isAnnounced;
            });
            mAnnounced[complaint.rule] += isSaidNow ? 0 : 1;
        }
        for (const char* const key : {"calls", "bus_calls"}) {
            if (row.step->contains(key) && (*row.step)[key] == "any") {
                Set(key, observed, row);
            }
        }
    }

    // Writes what was observed where the step can say it; false where it cannot.
    bool Answers(const Complaint& complaint, const Json& observed, Row& row) {
        // What was observed is the outer step's.
        if (complaint.text.find(kNestedPlace) != std::string::npos) {
            return false;
        }
        bool isSaid = false;
        for (const std::string& key : KeysOf(complaint.rule)) {
            // Of the state a step tells only what it is asked for.
            if (observed.contains(key) && (row.step->contains(key) || !IsKindOfState(key))) {
                Set(key, observed, row);
                isSaid = true;
            }
        }
        return isSaid;
    }

    void Set(const std::string& key, const Json& observed, Row& row) {
        if (!observed.contains(key)) {
            return;
        }
        // The calls of many ticks cannot be written: they depend on the time.
        const bool manyTicks = key == "calls" && row.step->value("times", 1) > 1;
        (*row.step)[key] = manyTicks ? Json("any") : observed[key];
        changed.push_back(row.part);
    }

    std::vector<Row> mSteps;
    std::vector<std::string> mAnswered;
    std::map<std::string, std::size_t> mAnnounced;
};

// Whether the complaint sums up that a rule was broken otherwise than announced, and is as announced from now on.
bool IsSettled(const std::string& complaint, const Json& expect, const Acceptance& acceptance) {
    const std::size_t end = complaint.find(": ");
    const std::string rule = complaint.substr(0, end);
    const std::string_view words = std::string_view(complaint).substr(std::min(end, complaint.size()));
    if (!words.starts_with(kOtherNumber) && words != kOtherViolations) {
        return false;
    }
    const Json announced = expect.value("violations", Json::object()).value(rule, Json());
    const std::size_t number = announced.is_array() ? announced.size() : announced.get<std::size_t>();
    return acceptance.AnnouncedOf(rule) == number;
}

// The first violations of a rule are told by name, and the rest by this.
bool IsRest(const std::string& complaint) { return complaint.find(kMoreOfTheSame) != std::string::npos; }

}  // namespace

Accepted AcceptObserved(Json story, const Placeholders& placeholders, const std::vector<std::string>& usual,
                        const std::vector<Json>& events, const std::vector<std::string>& complaints) {
    Acceptance acceptance(story);
    acceptance.Take(events);
    for (const char* const part : {"begin", "steps", "end"}) {
        ShortenCalls(story[part]);
        for (Json& step : story[part]) {
            MakeAnswersReadable(step, "set");
        }
        const bool isChanged =
            std::find(acceptance.changed.begin(), acceptance.changed.end(), part) != acceptance.changed.end();
        if (!isChanged && std::find(usual.begin(), usual.end(), part) != usual.end()) {
            story.erase(part);
        }
    }
    for (const char* const key : {"answers", "bus_answers"}) {
        MakeAnswersReadable(story, key);
    }
    // Whatever no step says now: also what came after the last step, and what a step announces and did not come.
    std::vector<std::string> refused = acceptance.refused;
    const Json expect = story.value("expect", Json::object());
    for (const std::string& complaint : complaints) {
        const bool isTold = std::find(refused.begin(), refused.end(), complaint) != refused.end();
        if (!isTold && !acceptance.IsAnswered(complaint) && !IsRest(complaint) &&
            !IsSettled(complaint, expect, acceptance)) {
            refused.push_back(complaint);
        }
    }
    return {WithPlaceholders(story, placeholders), std::move(refused)};
}

}  // namespace simhost
