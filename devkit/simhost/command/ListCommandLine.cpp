#include <cstdio>
#include <nlohmann/json.hpp>

#include "doubles/host/Rules.h"
#include "simhost/command/CommandLine.h"
#include "simhost/scenario/Keys.h"
#include "simhost/verbs/VerbTable.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

Json KeysAsJson(std::string_view keys) { return Json(SplitKeys(keys)); }

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

}  // namespace

void AddList(CLI::App& app, ChosenCommand& chosen) {
    CLI::App* const list =
        app.add_subcommand("list", "Print, as JSON, the verbs and keys that scenarios are made of, and the rules");
    list->callback([&chosen] { chosen = &List; });
}

}  // namespace simhost
