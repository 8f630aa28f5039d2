#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "doubles/host/OperationList.h"
#include "doubles/host/Rules.h"
#include "simhost/command/CommandLine.h"
#include "simhost/contract/Clauses.h"
#include "simhost/launch/CaseRun.h"
#include "simhost/launch/Selection.h"
#include "simhost/scenario/CallTable.h"
#include "simhost/scenario/Keys.h"
#include "simhost/scenario/UsualCalls.h"
#include "simhost/verbs/VerbTable.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

struct ListOptions {
    std::string what;
    std::string scenarios;  // a folder; empty: the usual one
    bool json = false;
};

Json KeysAsJson(std::string_view keys) { return Json(SplitKeys(keys)); }

Json Verbs(bool nested) {
    Json verbs = Json::object();
    for (const Verb& verb : AllVerbs()) {
        if (!nested || verb.canBeNested) {
            verbs[std::string(verb.name)] = KeysAsJson(KeysOf(verb, nested));
        }
    }
    return verbs;
}

Json Objects() {
    Json objects = Json::object();
    for (const ObjectKind* const kind : keys::kAll) {
        objects[std::string(kind->name)] = KeysAsJson(kind->keys);
    }
    return objects;
}

Json Rules() {
    Json rules = Json::array();
    for (const RuleName& rule : AllRules()) {
        rules.push_back(rule.name);
    }
    return rules;
}

Json Clauses() {
    Json clauses = Json::array();
    for (const contract::Clause& clause : contract::AllClauses()) {
        clauses.push_back(clause.name);
    }
    return clauses;
}

Json Functions() {
    return {{"function", EntriesOf(Library::kPluginCore)}, {"bus_function", EntriesOf(Library::kMessaging)}};
}

// In the project its own scenarios, elsewhere those of the kit that is installed.
std::filesystem::path UsualFolder() {
    const std::filesystem::path ofProject = L"devkit/scenarios";
    return std::filesystem::is_directory(ofProject) ? ofProject : KitFolder().parent_path() / L"scenarios";
}

// By file: the title of each case.
Json Scenarios(const std::string& folder) {
    Json scenarios = Json::object();
    for (const std::filesystem::path& path :
         ScenariosNamed({folder.empty() ? UsualFolder() : std::filesystem::path(Wide(folder))})) {
        const ScenarioFile file(path);
        Json& cases = scenarios[Utf8(path.filename().wstring())] = Json::object();
        for (const std::string& name : file.Cases()) {
            cases[name] = file.TitleOf(name);
        }
    }
    return scenarios;
}

struct KindRow {
    const char* name;
    Json (*list)(const ListOptions& options);
    bool inAll;  // part of what is listed when no kind is named
};

constexpr KindRow kKinds[] = {
    {"verbs", [](const ListOptions&) { return Verbs(false); }, true},
    {"nested_verbs", [](const ListOptions&) { return Verbs(true); }, true},
    {"objects", [](const ListOptions&) { return Objects(); }, true},
    {"functions", [](const ListOptions&) { return Functions(); }, true},
    {"usual", [](const ListOptions&) { return UsualLists(); }, true},
    {"rules", [](const ListOptions&) { return Rules(); }, true},
    {"clauses", [](const ListOptions&) { return Clauses(); }, true},
    {"operations", [](const ListOptions&) { return Json(HostOperationNames()); }, false},
    {"suites", [](const ListOptions&) { return Json(SuiteNames()); }, false},
    {"scenarios", [](const ListOptions& options) { return Scenarios(options.scenarios); }, false},
};

std::vector<std::string> KindNames() {
    std::vector<std::string> names;
    for (const KindRow& kind : kKinds) {
        names.emplace_back(kind.name);
    }
    return names;
}

// One line for each member, its own members behind it.
void Print(const Json& list, int indent) {
    for (const auto& [key, value] : list.items()) {
        const bool nested = value.is_object();
        std::string shown = value.is_string() ? value.get<std::string>() : "";
        for (std::size_t i = 0; value.is_array() && i < value.size(); ++i) {
            shown += (i == 0 ? "" : ", ") + (value[i].is_string() ? value[i].get<std::string>() : value[i].dump());
        }
        const bool named = list.is_object() && !key.empty();
        std::printf("%*s%s%s%s\n", indent, "", named ? key.c_str() : "", named && !shown.empty() ? ": " : "",
                    shown.c_str());
        if (nested) {
            Print(value, indent + 2);
        }
    }
}

int List(const ListOptions& options) {
    Json all = Json::object();
    for (const KindRow& kind : kKinds) {
        if (options.what.empty() ? kind.inAll : options.what == kind.name) {
            all[kind.name] = kind.list(options);
        }
    }
    const Json& shown = options.what.empty() ? all : all.front();
    if (options.json) {
        std::printf("%s\n", shown.dump(2).c_str());
    } else {
        Print(shown, 0);
    }
    return 0;
}

}  // namespace

void AddList(CLI::App& app, ChosenCommand& chosen) {
    const auto options = std::make_shared<ListOptions>();
    CLI::App* const list = app.add_subcommand("list", "Print what there is: scenarios, and what they are made of");
    list->add_option("what", options->what, "One kind alone; else all but the last three")
        ->check(CLI::IsMember(KindNames()));
    list->add_option("--folder", options->scenarios,
                     "Where scenarios are listed from; else devkit/scenarios, or the kit's own");
    list->add_flag("--json", options->json, "As JSON, for programs");
    list->callback([options, &chosen] { chosen = [options] { return List(*options); }; });
}

}  // namespace simhost
