#include <cstdio>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/scenario/ScenarioFile.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// "${work}" and "${plugin}" stand as they are.
int Expand(const std::filesystem::path& scenario) {
    const ScenarioFile file(scenario);
    const Placeholders placeholders = {
        {"work", "<work>"}, {"plugin", "<plugin>"}, {"version", "<version>"}, {"surrogate", "<surrogate>"}};
    file.Check({});
    Json cases = Json::object();
    for (const std::string& name : file.Cases()) {
        cases[name] = file.WrittenOut(name, placeholders);
    }
    std::printf("%s\n", cases.dump(2).c_str());
    return 0;
}

}  // namespace

void AddExpand(CLI::App& app, ChosenCommand& chosen) {
    const auto scenario = std::make_shared<std::string>();
    CLI::App* const expand =
        app.add_subcommand("expand", "Print a scenario's cases with all values and defaults written out, as JSON");
    expand->add_option("scenario", *scenario, "The scenario's JSON file")->required();
    expand->callback([scenario, &chosen] { chosen = [scenario] { return Expand(Wide(*scenario)); }; });
}

}  // namespace simhost
