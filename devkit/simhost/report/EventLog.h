// A run for machines: one JSON object per line, each written out before anything else happens, so that a lost process
// loses none. docs/simhost.md describes the lines.
//
// Thread: main.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "simhost/report/LineFile.h"

namespace simhost {

class EventLog {
  public:
    // Appends to the file; writes nothing when there is no name. Throws std::runtime_error when it cannot be written.
    explicit EventLog(const std::filesystem::path& file);

    void Write(const std::string& event, const nlohmann::ordered_json& members);
    bool HasFailed() const { return mFile.HasFailed(); }

  private:
    LineFile mFile;
};

// The end of a process may have cut the last line of the file short; the next one would be swallowed.
void EndLine(const std::filesystem::path& file);

// One such line, without its end. Texts that are not UTF-8 are replaced.
std::string LineOfEvent(const std::string& event, const nlohmann::ordered_json& members);

}  // namespace simhost
