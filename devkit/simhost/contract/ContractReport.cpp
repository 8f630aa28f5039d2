#include "simhost/contract/ContractReport.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/launch/RunFolder.h"

namespace simhost::contract {

namespace {

using Json = nlohmann::ordered_json;

// Further ones say the same of other entries or calls; all are in the JSON.
constexpr std::size_t kShownPerClause = 3;

const char* StateOf(const ContractResult& result, const Clause& clause) {
    return result.IsBroken(clause.id) ? "broken" : result.tried.contains(clause.id) ? "kept" : "not tried";
}

// A text of one paragraph, broken into lines.
std::string Wrapped(const std::string& text, const std::string& indent) {
    constexpr std::size_t kWidth = 100;
    std::string lines;
    std::string line = indent;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::string word = text.substr(at, end - at);
        if (line.size() + 1 + word.size() > kWidth && line != indent) {
            lines += line + "\n";
            line = indent;
        }
        line += (line == indent ? "" : " ") + word;
        at = end + 1;
    }
    return lines + line + "\n";
}

std::string Padded(const std::string& text, std::size_t width) {
    return text + std::string(width > text.size() ? width - text.size() : 1, ' ');
}

// Laid out for the day, the library has another name.
Finding InOwnName(const Sighting& sighting, const std::string& library) {
    Finding finding = sighting.finding;
    if (sighting.run == kDay) {
        finding.seen =
            ReplaceAll(finding.seen, kPluginCoreName, Utf8(std::filesystem::path(Wide(library)).filename().wstring()));
    }
    return finding;
}

struct Seen {
    std::string what;
    std::string runs;  // in which the same was seen
};

// Each thing once, however many runs have shown it.
std::vector<Seen> SeenOf(const ContractResult& result, ClauseId clause, const std::string& library) {
    std::vector<Seen> all;
    std::vector<Finding> findings;
    for (const Sighting& sighting : result.sightings) {
        if (sighting.finding.clause != clause) {
            continue;
        }
        const Finding finding = InOwnName(sighting, library);
        const auto known = std::find_if(findings.begin(), findings.end(), [&](const Finding& other) {
            return other.entry == finding.entry && other.seen == finding.seen;
        });
        if (known == findings.end()) {
            findings.push_back(finding);
            all.push_back({Describe(finding), sighting.run});
        } else {
            all[static_cast<std::size_t>(known - findings.begin())].runs += ", " + sighting.run;
        }
    }
    return all;
}

std::string Sightings(const ContractResult& result, ClauseId clause, const std::string& library) {
    std::string lines;
    const std::vector<Seen> all = SeenOf(result, clause, library);
    const std::size_t shown = std::min(all.size(), kShownPerClause);
    for (std::size_t i = 0; i < shown; ++i) {
        lines += Wrapped(all[i].what + " [" + all[i].runs + "]", "             ");
    }
    return all.size() == shown ? lines : lines + "             and " + std::to_string(all.size() - shown) + " more\n";
}

struct Counts {
    int kept = 0, broken = 0, notTried = 0;
};

Counts CountUpTo(const ContractResult& result, Level level) {
    Counts counts;
    for (const Clause& clause : AllClauses()) {
        if (clause.level <= level) {
            int& count = result.IsBroken(clause.id)         ? counts.broken
                         : result.tried.contains(clause.id) ? counts.kept
                                                            : counts.notTried;
            ++count;
        }
    }
    return counts;
}

std::string NotTried(const ContractResult& result, Level level) {
    std::string names;
    for (const Clause& clause : AllClauses()) {
        if (clause.level <= level && std::string_view(StateOf(result, clause)) == "not tried") {
            names += (names.empty() ? "" : ", ") + std::string(clause.name);
        }
    }
    return names;
}

std::string LastLine(const ContractResult& result, Level level) {
    const std::string notTried = NotTried(result, level);
    switch (JudgementOf(result, level)) {
        case Judgement::kBroken:
            return "FAILED: \"simhost explain\" and a clause's name tell why, and how to mend it.\n";
        case Judgement::kUnfinished:
            return "Not checked to the end: the note tells why.\n";
        case Judgement::kKept:
            break;
    }
    return notTried.empty() ? "Passed: the library keeps the contract.\n"
                            : "Passed, as far as it was tried; not tried: " + notTried + ".\n";
}

}  // namespace

Judgement JudgementOf(const ContractResult& result, Level level) {
    return CountUpTo(result, level).broken != 0 ? Judgement::kBroken
           : result.isWhole                     ? Judgement::kKept
                                                : Judgement::kUnfinished;
}

std::string ReportText(const ContractResult& result, Level level, const std::string& library) {
    std::string text = library + ", level " + NameOf(level) + "\n\n";
    for (const Clause& clause : AllClauses()) {
        const bool isHint = clause.level == Level::kHint && result.IsBroken(clause.id);
        if (clause.level > level && !isHint) {
            continue;
        }
        text += "  " + Padded(isHint ? "hint" : StateOf(result, clause), 11) + Padded(clause.name, 20) + clause.what +
                "\n" + Sightings(result, clause.id, library);
    }
    for (const std::string& note : result.notes) {
        text += "\nnote: " + note + "\n";
    }
    const Counts counts = CountUpTo(result, level);
    text += "\n" + std::to_string(counts.kept) + " clauses kept, " + std::to_string(counts.broken) + " broken, " +
            std::to_string(counts.notTried) + " not tried.\n";
    return text + LastLine(result, level);
}

Json ReportJson(const ContractResult& result, Level level, const std::string& library) {
    Json clauses = Json::array();
    for (const Clause& clause : AllClauses()) {
        Json seen = Json::array();
        for (const Sighting& sighting : result.sightings) {
            if (sighting.finding.clause == clause.id) {
                seen.push_back({{"run", sighting.run},
                                {"entry", sighting.finding.entry},
                                {"call", sighting.finding.call},
                                {"text", InOwnName(sighting, library).seen}});
            }
        }
        clauses.push_back({{"clause", clause.name},
                           {"level", NameOf(clause.level)},
                           {"state", StateOf(result, clause)},
                           {"what", clause.what},
                           {"seen", seen}});
    }
    return {
        {"library", library},      {"level", NameOf(level)}, {"passed", JudgementOf(result, level) == Judgement::kKept},
        {"whole", result.isWhole}, {"clauses", clauses},     {"notes", result.notes}};
}

std::string ExplanationOf(const Clause& clause) {
    return std::string(clause.name) + ", level " + NameOf(clause.level) + "\n" + Wrapped(clause.what, "  ") + "Why:\n" +
           Wrapped(clause.reason, "  ") + "What to do:\n" + Wrapped(clause.cure, "  ");
}

}  // namespace simhost::contract
