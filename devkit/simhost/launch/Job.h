// Processes that end together: when the object is destroyed, when this process ends, however it ends. The processes
// that they start belong to the job as well.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace simhost {

class Job {
  public:
    // Throws std::runtime_error.
    Job();
    ~Job();
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    // Before the process can start another one. Throws std::runtime_error.
    void Add(HANDLE process) const;

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
