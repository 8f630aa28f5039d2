// Starts a program by the command line that a file holds, exactly as it stands there, and answers with its exit code:
// what Linux passes on are words, and /D= of an installer takes the rest of the line as it is.
//
//   start_program.exe [--without-rights] FILE
//
//   --without-rights   as a user who is no administrator
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <fstream>
#include <iterator>
#include <string>

namespace {

constexpr int kCannotStart = 120;

// The file holds UTF-8.
std::wstring ReadCommandLine(const wchar_t* path) {
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    std::wstring line(text.size(), L'\0');
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), line.data(),
                                           static_cast<int>(line.size()));
    line.resize(static_cast<std::size_t>(length));
    return line;
}

// The token of this process, in which the group of administrators only counts where something is denied to it.
HANDLE TokenWithoutRights() {
    HANDLE own = nullptr;
    HANDLE restricted = nullptr;
    BYTE administrators[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof administrators;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &own) ||
        !CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size)) {
        return nullptr;
    }
    SID_AND_ATTRIBUTES disabled = {administrators, 0};
    CreateRestrictedToken(own, 0, 1, &disabled, 0, nullptr, 0, nullptr, &restricted);
    CloseHandle(own);
    return restricted;
}

bool Start(std::wstring& line, bool withoutRights, PROCESS_INFORMATION& process) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    if (!withoutRights) {
        return CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process) !=
               0;
    }
    const HANDLE token = TokenWithoutRights();
    return token != nullptr && CreateProcessAsUserW(token, nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                                    nullptr, &startup, &process) != 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const bool withoutRights = argc == 3 && std::wcscmp(argv[1], L"--without-rights") == 0;
    if (argc < 2) {
        return kCannotStart;
    }
    std::wstring line = ReadCommandLine(argv[argc - 1]);
    PROCESS_INFORMATION process = {};
    if (!Start(line, withoutRights, process)) {
        std::fprintf(stderr, "cannot start: error %lu\n", GetLastError());
        return kCannotStart;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    return static_cast<int>(code);
}
