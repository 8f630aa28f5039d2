#include "simhost/launch/Job.h"

#include <tlhelp32.h>

#include <cstddef>
#include <stdexcept>
#include <string_view>

#include "doubles/common/Text.h"
#include "simhost/launch/Quoting.h"

namespace simhost {

namespace {

constexpr DWORD kPauseMilliseconds = 10;
constexpr int kLongestWait = 500;  // times the pause

[[noreturn]] void Fail(const std::string& what) {
    throw std::runtime_error(what + " (error " + std::to_string(GetLastError()) + ")");
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

std::wstring CommandLineOf(const ProgramToStart& what) {
    std::wstring line = Quoted(what.program.wstring());
    for (const std::wstring& argument : what.arguments) {
        line += L" " + Quoted(argument);
    }
    return line;
}

// What Windows is told beside the command line: the job that a process begins in.
class StartAttributes {
  public:
    explicit StartAttributes(HANDLE job) : mJob(job) {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        mBytes.resize(size);
        if (InitializeProcThreadAttributeList(Get(), 1, 0, &size) == 0 ||
            UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_JOB_LIST, &mJob, sizeof mJob, nullptr, nullptr) ==
                0) {
            Fail("Windows starts no process in a job object");
        }
    }
    ~StartAttributes() { DeleteProcThreadAttributeList(Get()); }
    StartAttributes(const StartAttributes&) = delete;
    StartAttributes& operator=(const StartAttributes&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST Get() { return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(mBytes.data()); }

  private:
    HANDLE mJob;  // Windows keeps its address
    std::vector<std::byte> mBytes;
};

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

PROCESS_INFORMATION Job::Start(const ProgramToStart& what) const {
    StartAttributes attributes(mJob);
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.lpAttributeList = attributes.Get();
    if (what.output != nullptr) {
        startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        startup.StartupInfo.hStdOutput = what.output;
    }
    std::wstring line = CommandLineOf(what);
    PROCESS_INFORMATION process{};
    const auto start = [&] {
        return CreateProcessW(what.program.c_str(), line.data(), nullptr, nullptr, TRUE,
                              what.flags | EXTENDED_STARTUPINFO_PRESENT, nullptr,
                              what.folder.empty() ? nullptr : what.folder.c_str(), &startup.StartupInfo, &process) != 0;
    };
    // About one start in a thousand fails in Wine itself, with this code and before the program begins.
    if (!start() && !(GetLastError() == ERROR_INTERNAL_ERROR && start())) {
        Fail("cannot start " + Utf8(what.program.wstring()));
    }
    return process;
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
