// The calls of a run in a file of its own, written as they happen: when the host's process is lost within a step, which
// tells its calls at its end, they are told from here.
//
// Thread: CallJournal: main. The functions: any.
#pragma once

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "simhost/checks/PluginCoreCalls.h"
#include "simhost/report/LineFile.h"

namespace simhost {

class CallJournal {
  public:
    // Throws std::runtime_error.
    void KeepIn(const std::filesystem::path& file);
    // Calls are numbered from 0 in the order in which they begin. Written twice: with its arguments, before the library
    // is called, and whole when it has returned.
    void Write(std::size_t number, const PluginCoreCall& call);

  private:
    LineFile mFile;
};

// The calls from that number on; those that never came back have not returned.
std::vector<PluginCoreCall> ReadJournal(const std::filesystem::path& file, std::size_t first);

}  // namespace simhost
