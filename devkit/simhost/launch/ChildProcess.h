// A process that this one started, and that does not outlive the object.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "simhost/launch/Job.h"

namespace simhost {

class ChildProcess {
  public:
    // Starts the program in its own folder. Throws std::runtime_error.
    ChildProcess(const std::filesystem::path& program, const std::vector<std::wstring>& arguments, const Job& job);
    // Ends the process when it still runs.
    ~ChildProcess();
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&&) = delete;

    DWORD Id() const { return mId; }
    // The exit code; nothing when the process still runs after that time. Throws Cancelled.
    std::optional<DWORD> WaitFor(std::int64_t milliseconds) const;

  private:
    HANDLE mProcess;
    DWORD mId;
};

}  // namespace simhost
