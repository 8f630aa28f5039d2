#include "simhost/report/ResultRecord.h"

#include <fstream>
#include <stdexcept>
#include <utility>

#include "doubles/host/Host.h"
#include "simhost/report/WholeFile.h"
#include "simhost/run/FlightRecorder.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// Ninety leaked suites are one mistake.
constexpr std::size_t kComplaintsPerRule = 5;

void Write(const std::filesystem::path& file, const Json& result) {
    WriteWholeFile(file, result.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

struct Noted {
    std::int64_t amount = 0;
    std::vector<std::string> texts;
};

std::map<std::string, Noted> NotedByRule(const RuleBook& book) {
    std::map<std::string, Noted> noted;
    for (const Violation& violation : book.Violations()) {
        Noted& ofRule = noted[NameOf(violation.rule)];
        ofRule.amount += violation.amount;
        ofRule.texts.push_back(violation.text);
    }
    return noted;
}

void Complain(const std::string& rule, const std::vector<std::string>& texts, std::vector<std::string>& complaints) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (i == kComplaintsPerRule) {
            complaints.push_back(rule + ": " + kMoreOfTheSame);
            return;
        }
        complaints.push_back(rule + ": " + texts[i]);
    }
}

Json AsJson(const Violation& violation) {
    Json json = {{"rule", NameOf(violation.rule)}, {"amount", violation.amount}, {"text", violation.text}};
    if (!violation.module.empty()) {
        json["module"] = violation.module;
    }
    return json;
}

Violation AsViolation(const Json& json) {
    return {FindRule(json.at("rule").get<std::string>())->rule, json.at("amount"), json.at("text"),
            json.value("module", std::string())};
}

Json ViolationsAsJson(const RuleBook& book) {
    Json violations = Json::array();
    for (const Violation& violation : book.Violations()) {
        violations.push_back(AsJson(violation));
    }
    return violations;
}

// Null when there is no such file, or none that can be read.
Json ReadJson(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const Json value = Json::parse(stream, nullptr, false);
    return value.is_discarded() ? Json() : value;
}

// A process that was lost may have left half a line.
Json ReadLines(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    Json values = Json::array();
    for (std::string line; std::getline(stream, line);) {
        if (Json value = Json::parse(line, nullptr, false); !value.is_discarded()) {
            values.push_back(std::move(value));
        }
    }
    return values;
}

}  // namespace

Verdict Judge(const RuleBook& book, const Expectations& expect) {
    Verdict verdict{true, {}};
    std::map<std::string, Noted> noted = NotedByRule(book);
    for (const std::string& rule : expect.ignored) {
        noted.erase(rule);
    }
    for (const auto& [rule, amount] : expect.violations) {
        if (expect.ignored.contains(rule)) {
            continue;
        }
        if (noted[rule].amount != amount) {
            verdict.complaints.push_back(rule + kOtherNumber + std::to_string(noted[rule].amount) +
                                         " times, expected " + std::to_string(amount));
        } else {
            noted.erase(rule);
        }
    }
    for (const auto& [rule, texts] : expect.violationTexts) {
        if (expect.ignored.contains(rule)) {
            continue;
        }
        if (noted[rule].texts != texts) {
            verdict.complaints.push_back(rule + kOtherViolations);
        } else {
            noted.erase(rule);
        }
    }
    for (const auto& [rule, violations] : noted) {
        Complain(rule, violations.texts, verdict.complaints);
    }
    verdict.passed = verdict.complaints.empty();
    return verdict;
}

void WriteResult(const std::filesystem::path& file, const std::string& title, const Verdict& verdict) {
    Json hostCalls = Json::object();
    for (const auto& [operation, count] : Host().operations.Totals()) {
        hostCalls[operation] = count;
    }
    Write(file, {{"scenario", title},
                 {"passed", verdict.passed},
                 {"complaints", verdict.complaints},
                 {"violations", ViolationsAsJson(Host().rules)},
                 {"notes", Host().notes},
                 {"host_calls", hostCalls}});
}

void NoteViolation(const std::filesystem::path& file, const Violation& violation) {
    std::ofstream stream(file, std::ios::binary | std::ios::app);
    stream << AsJson(violation).dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
    if (!stream.flush()) {
        RecordLostLines();
    }
}

void CompleteResult(const std::filesystem::path& file, const Scenario& scenario, bool shouldBeThere,
                    const std::filesystem::path& notedViolations, std::vector<Violation> seenFromOutside) {
    Json result = shouldBeThere ? ReadJson(file) : Json();
    const bool isThere = result.is_object();
    if (shouldBeThere && !isThere) {
        seenFromOutside.push_back({Rule::kLostVerdict, 1, "the host's process ended, but its result is not there"});
    }
    if (isThere && seenFromOutside.empty()) {
        return;
    }
    RuleBook book;
    for (const Json& violation : isThere ? result["violations"] : ReadLines(notedViolations)) {
        book.Broken(AsViolation(violation));
    }
    for (Violation& violation : seenFromOutside) {
        book.Broken(std::move(violation));
    }
    const Verdict verdict = Judge(book, scenario.expect);
    result["scenario"] = scenario.title;
    result["passed"] = verdict.passed;
    result["complaints"] = verdict.complaints;
    result["violations"] = ViolationsAsJson(book);
    Write(file, result);
}

void AddToResult(const std::filesystem::path& file, const std::string& name, Json value) {
    Json result = ReadJson(file);
    if (result.is_object()) {
        result[name] = std::move(value);
        Write(file, result);
    }
}

Verdict ReadResult(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("there is no result");
    }
    const Json result = Json::parse(stream);
    Verdict verdict{result.at("passed").get<bool>(), result.at("complaints").get<std::vector<std::string>>()};
    for (const Json& violation : result.at("violations")) {
        verdict.violations.push_back(AsViolation(violation));
    }
    return verdict;
}

}  // namespace simhost
