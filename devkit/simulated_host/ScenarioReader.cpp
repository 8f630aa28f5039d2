#include "simulated_host/ScenarioReader.h"

#include <fstream>
#include <functional>

#include "simulated_host/ObjectReader.h"
#include "simulated_host/Rules.h"
#include "simulated_host/StepReader.h"
#include "simulated_host/Text.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

Json ParseFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw ScenarioError(Utf8(file.wstring()), "cannot be read");
    }
    try {
        return Json::parse(stream);
    } catch (const Json::parse_error& error) {
        throw ScenarioError(Utf8(file.wstring()), error.what());
    }
}

void FillPlaceholders(Json& value, const Placeholders& placeholders, const std::string& place) {
    if (value.is_structured()) {
        for (auto& [key, member] : value.items()) {
            FillPlaceholders(member, placeholders, place + (value.is_array() ? "[" + key + "]" : "." + key));
        }
        return;
    }
    if (!value.is_string()) {
        return;
    }
    std::string text = value.get<std::string>();
    for (const auto& [name, meaning] : placeholders) {
        text = ReplaceAll(std::move(text), "${" + name + "}", meaning);
        text = ReplaceAll(std::move(text), "${" + name + ":json}", AsJsonText(meaning));
    }
    if (text.find("${") != std::string::npos) {
        throw ScenarioError(place, "unknown placeholder in \"" + text + "\"");
    }
    value = text;
}

// Replaces {"usual": name} among the expected calls by the list of that name in the file usual-calls.json beside the
// scenario.
class UsualCalls {
  public:
    explicit UsualCalls(const std::filesystem::path& scenario) {
        const std::filesystem::path file = scenario.parent_path() / L"usual-calls.json";
        if (std::filesystem::exists(file)) {
            mLists = ParseFile(file);
        }
    }

    void FillIn(Json& value, const std::string& place) const {
        if (!value.is_structured()) {
            return;
        }
        if (value.is_object() && value.contains("calls") && value["calls"].is_array()) {
            value["calls"] = Filled(value["calls"], place);
        }
        for (auto& [key, member] : value.items()) {
            FillIn(member, place + (value.is_array() ? "[" + key + "]" : "." + key));
        }
    }

  private:
    Json Filled(const Json& calls, const std::string& place) const {
        Json filled = Json::array();
        for (const Json& call : calls) {
            if (!call.is_object() || !call.contains("usual")) {
                filled.push_back(call);
                continue;
            }
            const std::string name = TextOf(call["usual"], place);
            if (!mLists.contains(name)) {
                throw ScenarioError(place, "usual-calls.json has no list \"" + name + "\"");
            }
            filled.insert(filled.end(), mLists[name].begin(), mLists[name].end());
        }
        return filled;
    }

    Json mLists = Json::object();
};

std::vector<CopyToMake> ReadCopies(ObjectReader& reader) {
    // What nearly every scenario wants: the library is found beside the program.
    if (reader.Find("copies") == nullptr) {
        return {{"PluginCoreX64.dll", "host/PluginCoreX64.dll"}};
    }
    std::vector<CopyToMake> copies;
    for (const Json& value : reader.Array("copies")) {
        ObjectReader copy(value, reader.PlaceOf("copies"));
        copies.push_back({copy.NeedText("copy"), copy.NeedText("to")});
        copy.Finish();
    }
    return copies;
}

LaunchInfo ReadLaunchInfo(ObjectReader& reader) {
    LaunchInfo info;
    if (const Json* const value = reader.Find("launch_info")) {
        ObjectReader member(*value, reader.PlaceOf("launch_info"));
        info.local = member.OptionalText("local");
        info.common = member.OptionalText("common");
        member.Finish();
    }
    return info;
}

std::vector<std::string> ReadTexts(const Json& array, const std::string& place) {
    std::vector<std::string> texts;
    for (const Json& value : array) {
        texts.push_back(TextOf(value, place));
    }
    return texts;
}

std::map<std::int32_t, std::string> ReadDefaultFonts(ObjectReader& reader) {
    std::map<std::int32_t, std::string> fonts;
    if (const Json* const value = reader.Find("default_fonts")) {
        for (const auto& [script, name] : value->items()) {
            const std::string place = reader.PlaceOf("default_fonts." + script);
            char* end = nullptr;
            const long code = std::strtol(script.c_str(), &end, 10);
            if (script.empty() || *end != '\0') {
                throw ScenarioError(place, "the key must be a script code");
            }
            fonts[static_cast<std::int32_t>(code)] = TextOf(name, place);
        }
    }
    return fonts;
}

Document ReadDocument(const Json& value, const std::string& name, const std::string& place) {
    ObjectReader reader(value, place);
    Document document;
    document.name = name;
    document.path = reader.NeedText("path");
    document.modified = reader.Flag("modified", false);
    document.frames = ReadFrames(reader.Array("frames"), reader.PlaceOf("frames"));
    document.placed = ReadTexts(reader.Array("placed"), reader.PlaceOf("placed"));
    reader.Finish();
    return document;
}

void ReadHost(const Json& value, const std::string& place, Scenario& scenario) {
    ObjectReader reader(value, place);
    scenario.defaultFonts = ReadDefaultFonts(reader);
    scenario.emptyHandleForNoMatches = reader.Flag("empty_handle_for_no_matches", false);
    scenario.refusedSuites = ReadTexts(reader.Array("refused_suites"), reader.PlaceOf("refused_suites"));
    if (const Json* const documents = reader.Find("documents")) {
        for (const auto& [name, document] : documents->items()) {
            scenario.documents.push_back(ReadDocument(document, name, reader.PlaceOf("documents." + name)));
        }
    }
    reader.Finish();
}

Expectations ReadExpectations(const Json& value, const std::string& place) {
    ObjectReader reader(value, place);
    Expectations expect;
    expect.library = reader.OptionalText("library");
    if (const Json* const violations = reader.Find("violations")) {
        for (const auto& [rule, amount] : violations->items()) {
            if (FindRule(rule) == nullptr) {
                throw ScenarioError(reader.PlaceOf("violations"), "there is no rule \"" + rule + "\"");
            }
            const std::string member = reader.PlaceOf("violations." + rule);
            if (amount.is_array()) {
                expect.violationTexts[rule] = ReadTexts(amount, member);
            } else {
                expect.violations[rule] = NumberOf(amount, member);
            }
        }
    }
    reader.Finish();
    return expect;
}

}  // namespace

Scenario ReadScenario(const std::filesystem::path& file, const Placeholders& placeholders) {
    const std::string place = Utf8(file.filename().wstring());
    Json value = ParseFile(file);
    UsualCalls(file).FillIn(value, place);
    FillPlaceholders(value, placeholders, place);

    ObjectReader reader(value, place);
    Scenario scenario;
    scenario.title = reader.NeedText("title");
    scenario.files = ReadFiles(reader.Array("files"), reader.PlaceOf("files"));
    scenario.copies = ReadCopies(reader);
    scenario.launchInfo = ReadLaunchInfo(reader);
    scenario.processes = ReadTexts(reader.Array("processes"), reader.PlaceOf("processes"));
    if (const Json* const answers = reader.Find("answers")) {
        scenario.answers = *answers;
    }
    if (const Json* const host = reader.Find("host")) {
        ReadHost(*host, reader.PlaceOf("host"), scenario);
    }
    scenario.steps = ReadSteps(reader.Need("steps"), reader.PlaceOf("steps"));
    if (const Json* const expect = reader.Find("expect")) {
        scenario.expect = ReadExpectations(*expect, reader.PlaceOf("expect"));
    }
    reader.Finish();
    return scenario;
}

bool SendsMessage(const Step& step) {
    return step.action != "edit" && step.action != "switch_to" && step.action != "write" && step.action != "answers" &&
           step.action != "dialog";
}

}  // namespace simhost
