// A document as scripts/import-document writes it.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

namespace simhost {

// NOLINTNEXTLINE(bugprone-exception-escape): the JSON's move throws nothing
struct ImportedDocument {
    std::string title;                // a name of a file
    std::string source;               // the file that it was made from; not relative
    nlohmann::ordered_json document;  // as a scenario describes one
};

// Checks it whole. Throws ScenarioError, with the places in the file and what is wrong there.
ImportedDocument ReadImportedDocument(const std::filesystem::path& file);

}  // namespace simhost
