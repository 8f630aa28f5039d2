#include "simhost/scenario/ScenarioFile.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/scenario/Defaults.h"
#include "simhost/scenario/NearestWord.h"
#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/ScenarioReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// For checking, before anybody knows where a run takes place.
const Placeholders kSomePlaceholders = {
    {"work", "C:\\work"}, {"plugin", "C:\\plugin.aip"}, {"version", "0"}, {"surrogate", kSurrogate}};

std::string FileName(const std::filesystem::path& file) { return Utf8(file.generic_wstring()); }

JsonText ReadFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw ScenarioError({FileName(file) + ": cannot be read"});
    }
    JsonText text = ReadJsonText(std::string(std::istreambuf_iterator<char>(stream), {}));
    if (!text.readable) {
        Problems problems;
        for (const TextMistake& mistake : text.mistakes) {
            problems.Add({mistake.position, "", mistake.words});
        }
        throw ScenarioError(problems.Lines(FileName(file), 0));
    }
    return text;
}

std::vector<std::string> CasesOf(const Json& file) {
    std::vector<std::string> names;
    if (file.is_object() && file.contains("cases") && file["cases"].is_object()) {
        for (const auto& [name, members] : file["cases"].items()) {
            names.push_back(name);
        }
    }
    return names.empty() ? std::vector<std::string>{""} : names;
}

// Cases name folders, and stand on command lines.
bool IsCaseName(const std::string& name) {
    return !name.empty() && name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-") == std::string::npos;
}

// Only that all keys are known; what they hold is read case by case.
void CheckKeys(const Json& value, const Place& place, const ObjectKind& kind) {
    const ObjectReader reader(value, place, kind);
}

void CheckCases(const Json& file, const Place& place) {
    CheckKeys(file, place, keys::kScenario);
    if (!file.is_object() || !file.contains("cases")) {
        return;
    }
    const Place cases = place.Member("cases");
    if (!file["cases"].is_object() || file["cases"].empty()) {
        cases.Complain("must be an object that names cases");
        return;
    }
    for (const auto& [name, members] : file["cases"].items()) {
        if (!IsCaseName(name)) {
            cases.Member(name).ComplainOfKey("the name of a case has small letters, digits and hyphens only, not \"" +
                                             name + "\"");
        }
        CheckKeys(members, cases.Member(name), keys::kCase);
    }
}

// Keys that the check of the file has complained about already.
void EraseUnknown(Json& story) {
    const auto known = SplitKeys(keys::kScenario.keys);
    Json kept = Json::object();
    for (auto& [key, member] : story.items()) {
        if (known.contains(key)) {
            kept[key] = std::move(member);
        }
    }
    story = std::move(kept);
}

}  // namespace

ScenarioFile::ScenarioFile(std::filesystem::path file)
    : mPath(std::move(file)), mText(ReadFile(mPath)), mCases(CasesOf(mText.value)) {}

std::string ScenarioFile::PlaceOf(const std::string& caseName) const {
    return Utf8(mPath.filename().wstring()) + (caseName.empty() ? "" : "/" + caseName);
}

// What a case says replaces what the file says, but values are merged by name.
Json ScenarioFile::StoryOf(const std::string& caseName, Origins& origins) const {
    Json story = mText.value.is_object() ? mText.value : Json::object();
    story.erase("$schema");
    story.erase("cases");
    if (caseName.empty()) {
        return story;
    }
    const Json members = mText.value["cases"][caseName];
    const std::string written = "/cases/" + AsPointerPart(caseName) + "/";
    for (const auto& [key, member] : members.items()) {
        const std::string part = AsPointerPart(key);
        if (key == "values" && story.contains(key) && story[key].is_object() && member.is_object()) {
            for (const auto& [name, value] : member.items()) {
                const std::string valuePart = part + "/" + AsPointerPart(name);
                story[key][name] = value;
                origins.Set("/" + valuePart, written + valuePart);
            }
        } else {
            story[key] = member;
            origins.Set("/" + part, written + part);
        }
    }
    return story;
}

std::string ScenarioFile::PluginOf(const std::string& caseName) const {
    Origins origins;
    const Json plugin = StoryOf(caseName, origins).value("plugin", Json());
    return plugin.is_string() ? plugin.get<std::string>() : "QuorvelTypeAgentAI20.aip";
}

std::string ScenarioFile::TitleOf(const std::string& caseName) const {
    Origins origins;
    const Json title = StoryOf(caseName, origins).value("title", Json());
    return title.is_string() ? title.get<std::string>() : "";
}

std::vector<std::string> ScenarioFile::UsualPartsOf(const std::string& caseName) const {
    Origins origins;
    const Json story = StoryOf(caseName, origins);
    std::vector<std::string> parts;
    for (const char* const part : {"begin", "end"}) {
        if (!story.contains(part)) {
            parts.emplace_back(part);
        }
    }
    return parts;
}

Problems ScenarioFile::ProblemsOfFile() const {
    Problems problems;
    for (const TextMistake& mistake : mText.mistakes) {
        problems.Add({mistake.position, mistake.member, mistake.words});
    }
    StoryContext context{PlaceOf(""), "", mText.positions, problems};
    CheckCases(mText.value, Place(context));
    return problems;
}

ScenarioFile::Reading ScenarioFile::ReadStory(const std::string& caseName, const Placeholders& placeholders,
                                              Problems& problems, const std::filesystem::path& kit) const {
    StoryContext context{PlaceOf(caseName), caseName, mText.positions, problems, placeholders.at("work"), kit};
    const Place place(context);
    if (!mText.value.is_object()) {
        context.givenUp.insert(place.Pointer());  // the check of the file has complained already
    }
    Json story = StoryOf(caseName, context.origins);
    EraseUnknown(story);
    const Json own = story.value("values", Json::object());
    story.erase("values");
    Values values(placeholders, own, place.Member("values"));
    story = values.FillIn(story, place);
    WriteDefaults(story, values, place);
    Scenario scenario = ReadScenario(story, place, placeholders.at("work"));
    return {std::move(story), std::move(scenario)};
}

void ScenarioFile::Check(const std::filesystem::path& kit) const {
    Problems problems = ProblemsOfFile();
    for (const std::string& name : mCases) {
        ReadStory(name, kSomePlaceholders, problems, kit);
    }
    ThrowIfAny(problems);
}

ScenarioFile::Reading ScenarioFile::ReadOrThrow(const std::string& caseName, const Placeholders& placeholders) const {
    if (std::find(mCases.begin(), mCases.end(), caseName) == mCases.end()) {
        throw ScenarioError(
            {FileName(mPath) + ": there is no case \"" + caseName + "\"" + DidYouMean(caseName, mCases)});
    }
    Problems problems = ProblemsOfFile();
    Reading reading = ReadStory(caseName, placeholders, problems);
    ThrowIfAny(problems);
    return reading;
}

void ScenarioFile::ThrowIfAny(const Problems& problems) const {
    if (!problems.Empty()) {
        throw ScenarioError(problems.Lines(FileName(mPath), mCases.size()));
    }
}

Json ScenarioFile::WrittenOut(const std::string& caseName, const Placeholders& placeholders) const {
    return ReadOrThrow(caseName, placeholders).story;
}

Scenario ScenarioFile::Read(const std::string& caseName, const Placeholders& placeholders) const {
    return ReadOrThrow(caseName, placeholders).scenario;
}

}  // namespace simhost
