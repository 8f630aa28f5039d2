#include "simhost/report/JUnit.h"

#include <utf8cpp/utf8.h>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>

#include "doubles/common/Text.h"
#include "simhost/report/Transcript.h"

namespace simhost {

namespace {

struct Named {
    std::uint32_t code;
    const char* xml;
};

constexpr Named kNamed[] = {
    {'&', "&amp;"},
    {'<', "&lt;"},
    {'>', "&gt;"},
    {'"', "&quot;"},
    {'\n', "&#10;"},
    {'\t', "&#9;"},
    // Two code points that UTF-8 can hold and XML cannot.
    {0xFFFE, "\xEF\xBF\xBD"},
    {0xFFFF, "\xEF\xBF\xBD"},
};

std::string AsXmlCharacter(std::uint32_t code, const std::string& character) {
    const auto* const named =
        std::find_if(std::begin(kNamed), std::end(kNamed), [&](const Named& row) { return row.code == code; });
    if (named != std::end(kNamed)) {
        return named->xml;
    }
    return code < 0x20 ? ReplaceAll(ReplaceAll(ShowControlCharacters(character), "<", "&lt;"), ">", "&gt;") : character;
}

struct Suite {
    std::string name;
    std::vector<const RunOutcome*> runs;
};

std::vector<Suite> SuitesOf(const std::vector<RunOutcome>& runs) {
    std::vector<Suite> suites;
    for (const RunOutcome& run : runs) {
        const std::string name = Utf8(run.file.generic_wstring());
        const auto suite =
            std::find_if(suites.begin(), suites.end(), [&](const Suite& other) { return other.name == name; });
        (suite == suites.end() ? suites.emplace_back(Suite{name, {}}) : *suite).runs.push_back(&run);
    }
    return suites;
}

std::string Seconds(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", seconds);
    return text;
}

std::string Attribute(const char* name, const std::string& value) {
    return std::string(" ") + name + "=\"" + AsXmlText(value) + "\"";
}

template <class IsCounted>
std::string Count(const char* name, const std::vector<const RunOutcome*>& runs, const IsCounted& isCounted) {
    return Attribute(name, std::to_string(std::count_if(runs.begin(), runs.end(), isCounted)));
}

std::string Counts(const std::vector<const RunOutcome*>& runs) {
    double seconds = 0;
    for (const RunOutcome* const run : runs) {
        seconds += run->seconds;
    }
    return Attribute("tests", std::to_string(runs.size())) +
           Count("failures", runs, [](const RunOutcome* run) { return run->played && !run->passed; }) +
           Count("errors", runs, [](const RunOutcome* run) { return !run->played; }) +
           Attribute("time", Seconds(seconds));
}

std::string CaseOf(const RunOutcome& run) {
    std::string xml = "    <testcase" + Attribute("classname", Utf8(run.file.stem().wstring())) +
                      Attribute("name", run.caseName.empty() ? Utf8(run.file.stem().wstring()) : run.caseName) +
                      Attribute("time", Seconds(run.seconds));
    if (run.played && run.passed) {
        return xml + "/>\n";
    }
    const std::string element = run.played ? "failure" : "error";
    std::string text = run.failed && run.failed->number != 0
                           ? "step " + std::to_string(run.failed->number) + ": " + run.failed->say + "\n"
                           : "";
    for (const std::string& complaint : run.complaints) {
        text += complaint + "\n";
    }
    return xml + ">\n      <" + element + Attribute("message", run.complaints.empty() ? "" : run.complaints.front()) +
           ">" + AsXmlText(text) + "</" + element + ">\n    </testcase>\n";
}

}  // namespace

std::string AsXmlText(const std::string& text) {
    std::string valid;
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
    std::string xml;
    for (auto at = valid.begin(); at != valid.end();) {
        const auto begin = at;
        const auto code = utf8::next(at, valid.end());
        xml += AsXmlCharacter(code, std::string(begin, at));
    }
    return xml;
}

std::string AsJUnit(const std::vector<RunOutcome>& runs) {
    std::vector<const RunOutcome*> all;
    all.reserve(runs.size());
    for (const RunOutcome& run : runs) {
        all.push_back(&run);
    }
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" + Counts(all) + ">\n";
    for (const Suite& suite : SuitesOf(runs)) {
        xml += "  <testsuite" + Attribute("name", suite.name) + Counts(suite.runs) + ">\n";
        for (const RunOutcome* const run : suite.runs) {
            xml += CaseOf(*run);
        }
        xml += "  </testsuite>\n";
    }
    return xml + "</testsuites>\n";
}

}  // namespace simhost
