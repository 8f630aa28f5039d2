#include "simhost/scenario/ScenarioReader.h"

#include <fstream>
#include <functional>

#include "doubles/common/Text.h"
#include "doubles/host/Rules.h"
#include "simhost/scenario/HostReader.h"
#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/StepReader.h"

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

// Adds the scenario's own texts, each a text or a JSON value that stands for its compact text.
Placeholders WithOwnTexts(Json& value, const Placeholders& placeholders, const std::string& place) {
    Placeholders all = placeholders;
    if (!value.contains("texts")) {
        return all;
    }
    if (!value["texts"].is_object()) {
        throw ScenarioError(place + ".texts", "must be an object");
    }
    for (auto& [name, text] : value["texts"].items()) {
        if (placeholders.contains(name)) {
            throw ScenarioError(place + ".texts." + name, "the name has a meaning already");
        }
        FillPlaceholders(text, placeholders, place + ".texts." + name);
        all[name] = text.is_string() ? text.get<std::string>() : text.dump();
    }
    return all;
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
            // A list may stand for others in turn.
            const Json list = Filled(mLists[name], place);
            filled.insert(filled.end(), list.begin(), list.end());
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

Expectations ReadExpectations(const Json& value, const std::string& place) {
    ObjectReader reader(value, place);
    Expectations expect;
    expect.library = reader.OptionalText("library");
    expect.messagingLibrary = reader.OptionalText("messaging_library");
    if (const Json* const violations = reader.Find("violations")) {
        for (const auto& [rule, amount] : violations->items()) {
            if (FindRule(rule) == nullptr) {
                throw ScenarioError(reader.PlaceOf("violations"), "there is no rule \"" + rule + "\"");
            }
            const std::string member = reader.PlaceOf("violations." + rule);
            if (amount.is_array()) {
                expect.violationTexts[rule] = TextsOf(amount, member);
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
    FillPlaceholders(value, WithOwnTexts(value, placeholders, place), place);

    ObjectReader reader(value, place);
    Scenario scenario;
    scenario.title = reader.NeedText("title");
    reader.Find("texts");
    scenario.files = ReadFiles(reader.Array("files"), reader.PlaceOf("files"));
    scenario.copies = ReadCopies(reader);
    scenario.launchInfo = ReadLaunchInfo(reader);
    scenario.processes = TextsOf(reader.Array("processes"), reader.PlaceOf("processes"));
    if (const Json* const answers = reader.Find("answers")) {
        scenario.answers = *answers;
    }
    if (const Json* const answers = reader.Find("bus_answers")) {
        scenario.busAnswers = *answers;
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

}  // namespace simhost
