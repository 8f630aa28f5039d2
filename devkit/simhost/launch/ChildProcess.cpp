#include "simhost/launch/ChildProcess.h"

#include <stdexcept>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/launch/Cancellation.h"

namespace simhost {

namespace {

constexpr int kAttempts = 64;
constexpr DWORD kPauseMilliseconds = 50;

}  // namespace

std::wstring CommandLineOf(const std::filesystem::path& program, const std::vector<std::wstring>& arguments) {
    std::wstring line = L"\"" + program.wstring() + L"\"";
    for (const std::wstring& argument : arguments) {
        line += L" \"" + argument + L"\"";
    }
    return line;
}

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::wstring>& arguments,
                           const Job& job) {
    std::wstring line = CommandLineOf(program, arguments);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const auto start = [&] {
        return CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                              program.parent_path().c_str(), &startup, &process) != 0;
    };
    // About one start in a thousand fails in Wine itself, with this code and before the program begins.
    if (!start() && !(GetLastError() == ERROR_INTERNAL_ERROR && start())) {
        throw std::runtime_error("cannot start " + Utf8(program.wstring()) + " (error " +
                                 std::to_string(GetLastError()) + ")");
    }
    CloseHandle(process.hThread);
    mProcess = process.hProcess;
    mId = process.dwProcessId;
    job.Add(mProcess);
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

std::vector<ChildProcess> StartInOrder(const std::vector<std::filesystem::path>& programs, const Job& job) {
    const std::vector<std::wstring> arguments = {std::to_wstring(GetCurrentProcessId())};
    std::vector<ChildProcess> started;
    // Identifiers are used again. One that is too small is held by its process until a greater one turns up.
    std::vector<ChildProcess> tooSmall;
    while (started.size() < programs.size()) {
        ChildProcess process(programs[started.size()], arguments, job);
        if (started.empty() || process.Id() > started.back().Id()) {
            started.push_back(std::move(process));
        } else if (tooSmall.size() < kAttempts) {
            tooSmall.push_back(std::move(process));
        } else {
            throw std::runtime_error("Windows gives no greater process identifier");
        }
    }
    return started;
}

}  // namespace simhost
