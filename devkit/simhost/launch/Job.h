// Processes that end together: when the object is destroyed, when this process ends, however it ends. The processes
// that they start belong to the job as well.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

namespace simhost {

struct ProgramToStart {
    std::filesystem::path program;
    std::vector<std::wstring> arguments{};
    std::filesystem::path folder{};  // to run in; empty: this process's
    DWORD flags = 0;                 // of CreateProcess
    HANDLE output = nullptr;         // its standard output; null: this process's
};

class Job {
  public:
    // Throws std::runtime_error.
    Job();
    ~Job();
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    // The process belongs to the job from its first moment on: there is none in which this process could be killed and
    // leave it behind. The handles are the caller's. Throws std::runtime_error.
    PROCESS_INFORMATION Start(const ProgramToStart& what) const;

    struct Member {
        DWORD id;
        std::string program;  // its file name
    };
    // Those that still run.
    std::vector<Member> Members() const;
    // Ends all of them, and waits for it.
    void End() const;

  private:
    HANDLE mJob;
};

}  // namespace simhost
