#include "simhost/launch/ChildProcess.h"

#include <utility>

#include "simhost/launch/Cancellation.h"

namespace simhost {

namespace {

constexpr DWORD kPauseMilliseconds = 50;

}  // namespace

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::wstring>& arguments,
                           const Job& job) {
    const PROCESS_INFORMATION process = job.Start({program, arguments, program.parent_path()});
    CloseHandle(process.hThread);
    mProcess = process.hProcess;
    mId = process.dwProcessId;
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : mProcess(std::exchange(other.mProcess, nullptr)), mId(other.mId) {}

ChildProcess::~ChildProcess() {
    if (mProcess == nullptr) {
        return;
    }
    if (WaitForSingleObject(mProcess, 0) == WAIT_TIMEOUT) {
        TerminateProcess(mProcess, 1);
        WaitForSingleObject(mProcess, 5000);
    }
    CloseHandle(mProcess);
}

std::optional<DWORD> ChildProcess::WaitFor(std::int64_t milliseconds) const {
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(milliseconds);
    while (WaitForSingleObject(mProcess, kPauseMilliseconds) != WAIT_OBJECT_0) {
        ThrowIfCancelled();
        if (GetTickCount64() >= end) {
            return std::nullopt;
        }
    }
    DWORD code = 0;
    GetExitCodeProcess(mProcess, &code);
    return code;
}

}  // namespace simhost
