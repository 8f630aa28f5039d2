#include "simhost/launch/Job.h"

#include <tlhelp32.h>

#include <stdexcept>
#include <string_view>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

constexpr DWORD kPauseMilliseconds = 10;
constexpr int kLongestWait = 500;  // times the pause

[[noreturn]] void Fail(const char* what) {
    throw std::runtime_error(std::string(what) + " (error " + std::to_string(GetLastError()) + ")");
}

DWORD ActiveProcesses(HANDLE job) {
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION counts{};
    QueryInformationJobObject(job, JobObjectBasicAccountingInformation, &counts, sizeof counts, nullptr);
    return counts.ActiveProcesses;
}

bool IsIn(HANDLE job, DWORD id) {
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | SYNCHRONIZE, FALSE, id);
    BOOL isIn = FALSE;
    if (process != nullptr) {
        IsProcessInJob(process, job, &isIn);
        isIn = isIn != 0 && WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
        CloseHandle(process);
    }
    return isIn != 0;
}

}  // namespace

Job::Job() : mJob(CreateJobObjectW(nullptr, nullptr)) {
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (mJob == nullptr ||
        SetInformationJobObject(mJob, JobObjectExtendedLimitInformation, &limits, sizeof limits) == 0) {
        Fail("Windows gives no job object");
    }
}

Job::~Job() {
    End();
    CloseHandle(mJob);
}

void Job::Add(HANDLE process) const {
    if (AssignProcessToJobObject(mJob, process) == 0) {
        Fail("a process cannot be put into a job object");
    }
}

// Not the job's own list, which is always empty in Wine.
std::vector<Job::Member> Job::Members() const {
    std::vector<Member> members;
    if (ActiveProcesses(mJob) == 0) {
        return members;
    }
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(all, &entry); more != 0; more = Process32NextW(all, &entry)) {
        if (IsIn(mJob, entry.th32ProcessID)) {
            members.push_back({entry.th32ProcessID, Utf8(std::wstring_view(entry.szExeFile))});
        }
    }
    CloseHandle(all);
    return members;
}

void Job::End() const {
    TerminateJobObject(mJob, 1);
    for (int i = 0; i < kLongestWait && ActiveProcesses(mJob) != 0; ++i) {
        Sleep(kPauseMilliseconds);
    }
}

}  // namespace simhost
