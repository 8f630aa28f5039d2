// The file into which the host's process writes what happens in one run: the one that was asked for, or one for the
// time of the run.
#pragma once

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "simhost/launch/TemporaryFolder.h"
#include "simhost/report/RunOutcome.h"

namespace simhost {

class EventFile {
  public:
    // `asked`: empty when nobody asked, "-" for standard output; then the file is removed with the object, and `waits`
    // says whether to wait for other runs on this desktop. Throws std::runtime_error when it cannot be written.
    EventFile(const std::filesystem::path& asked, bool waits);

    const std::filesystem::path& Path() const { return mPath; }

    // Writes what the host's process may not have lived to write, and answers the lines of this run.
    std::vector<nlohmann::ordered_json> Complete(const RunOutcome& outcome) const;

  private:
    std::optional<TemporaryFolder> mForOneRun;
    bool mPrinted;
    std::filesystem::path mPath;
    std::size_t mOffset = 0;  // where the lines of this run begin
};

}  // namespace simhost
