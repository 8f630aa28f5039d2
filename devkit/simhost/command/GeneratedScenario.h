// Scenarios that commands make themselves: of an imported document, and of a host to be operated by hand.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simhost/command/ImportedDocument.h"
#include "simhost/launch/TemporaryFolder.h"

namespace simhost {

// A file in a temporary folder of its own, which is removed with the object.
class GeneratedScenario {
  public:
    // `name` is what reports call the file, as in "open.json.steps[0]". Throws std::runtime_error when it cannot be
    // written, Cancelled. `waits`: for other runs on this desktop.
    GeneratedScenario(const wchar_t* name, const nlohmann::ordered_json& scenario, bool waits);
    const std::filesystem::path& Path() const { return mPath; }

  private:
    TemporaryFolder mFolder;
    std::filesystem::path mPath;
};

// The document is opened, changed, saved and closed; whatever the PluginCore is told is only shown.
nlohmann::ordered_json ScenarioThatOpens(const ImportedDocument& imported);
// A host with these documents, in its window. Without documents it has one of its own.
nlohmann::ordered_json ScenarioWithWindow(const std::vector<ImportedDocument>& documents);

}  // namespace simhost
