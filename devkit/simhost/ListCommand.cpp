#include "simhost/ListCommand.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "doubles/host/Rules.h"
#include "simhost/scenario/Keys.h"
#include "simhost/scenario/ScenarioFile.h"
#include "simhost/verbs/VerbTable.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

Json KeysAsJson(std::string_view keys) { return Json(SplitKeys(keys)); }

}  // namespace

int List() {
    Json verbs = Json::object();
    Json nested = Json::object();
    for (const Verb& verb : AllVerbs()) {
        verbs[std::string(verb.name)] = KeysAsJson(KeysOf(verb, false));
        if (verb.reachesPlugin) {
            nested[std::string(verb.name)] = KeysAsJson(KeysOf(verb, true));
        }
    }
    Json objects = Json::object();
    for (const ObjectKind* const kind : keys::kAll) {
        objects[std::string(kind->name)] = KeysAsJson(kind->keys);
    }
    Json rules = Json::array();
    for (const RuleName& rule : AllRules()) {
        rules.push_back(rule.name);
    }
    const Json all = {{"verbs", verbs}, {"nested_verbs", nested}, {"objects", objects}, {"rules", rules}};
    std::printf("%s\n", all.dump(2).c_str());
    return 0;
}

int Expand(const std::filesystem::path& scenario) {
    const ScenarioFile file(scenario);
    const Placeholders placeholders = {{"work", "<work>"}, {"plugin", "<plugin>"}, {"version", "<version>"}};
    Json cases = Json::object();
    for (const std::string& name : file.Cases()) {
        file.Read(name, placeholders);
        cases[name] = file.WrittenOut(name, placeholders);
    }
    std::printf("%s\n", cases.dump(2).c_str());
    return 0;
}

}  // namespace simhost
